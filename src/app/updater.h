#pragma once

#include <QNetworkReply>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QUrl>
#include <chrono>
#include <optional>

#include "app/appcast.h"
#include "app/update_dialog.h"
#include "support/settings.h"
#include "support/wall_clock.h"

class QNetworkAccessManager;

namespace ostrelle::app {

namespace update_settings {
inline constexpr const char* automaticChecks = "automaticUpdateChecks";  // bool, true when absent
inline constexpr const char* lastCheck = "lastUpdateCheck";              // seconds since 1970 as text
}  // namespace update_settings

// Where releases are announced; OSTRELLE_UPDATE_FEED names another feed.
inline constexpr const char* defaultUpdateFeed = "https://ostrelle.app/releases/appcast.xml";
inline constexpr const char* updateFeedVariable = "OSTRELLE_UPDATE_FEED";

struct UpdateCheckResult {
    enum class Outcome { available, upToDate, failed };
    Outcome outcome = Outcome::failed;
    std::optional<Release> release;  // with `available`
    QString error;                   // with `failed`, in words for the user
};

// Checks the release feed once a day while automatic checks are allowed, and whenever the user
// asks. An on-demand check always shows its result; an automatic one speaks up only when a newer
// version is out. It never downloads or installs anything.
class Updater final : public QObject {
    Q_OBJECT

  public:
    struct Options {
        QUrl feed = configuredFeed();
        QString runningVersion = QStringLiteral(OSTRELLE_VERSION);
        WallClock clock = systemWallClock();
        std::chrono::milliseconds timeout{15'000};
        // The first automatic check waits this long after start, so it never slows the start.
        std::chrono::milliseconds startDelay{30'000};
        UpdateDialog::UrlOpener openUrl;  // the browser through QDesktopServices when unset
    };

    static QUrl configuredFeed();

    explicit Updater(Settings& settings, QObject* parent = nullptr);
    Updater(Settings& settings, Options options, QObject* parent = nullptr);
    ~Updater() override;

    bool automaticChecks() const;
    void setAutomaticChecks(bool allowed);
    // "Check for Updates…": shows the dialog at once, busy until the answer comes.
    void checkForUpdates();
    bool isChecking() const { return reply_ != nullptr; }
    // The dialog of the latest check while it is open.
    UpdateDialog* dialog() const { return dialog_; }

  signals:
    void checkingChanged(bool checking);
    void checkFinished(const ostrelle::app::UpdateCheckResult& result, bool onDemand);
    void automaticChecksChanged(bool allowed);

  private:
    void startCheck();
    void finish();
    UpdateCheckResult readReply(QNetworkReply& reply) const;
    void present(const UpdateCheckResult& result);
    UpdateDialog& openDialog();
    void scheduleNext(std::chrono::milliseconds atLeast = {});

    Settings& settings_;
    Options options_;
    QNetworkAccessManager* network_ = nullptr;  // made on the first check
    QPointer<QNetworkReply> reply_;
    QPointer<UpdateDialog> dialog_;
    QTimer nextCheck_;
    QTimer timeout_;
    bool onDemand_ = false;
    bool timedOut_ = false;
};

}  // namespace ostrelle::app
