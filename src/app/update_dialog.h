#pragma once

#include <QDialog>
#include <QUrl>
#include <functional>

#include "app/appcast.h"

class QLabel;
class QProgressBar;
class QPushButton;

namespace ostrelle::app {

// The one window that tells what a check for updates found: a busy state while an on-demand check
// runs, then the new version with its release notes and download page, "up to date", or the error.
// It never downloads anything: on Linux the distribution's packages bring new versions.
class UpdateDialog final : public QDialog {
    Q_OBJECT

  public:
    using UrlOpener = std::function<bool(const QUrl&)>;

    UpdateDialog(UrlOpener openUrl, QWidget* parent = nullptr);

    void showChecking();
    void showAvailable(const Release& release, const QString& runningVersion);
    void showUpToDate(const QString& runningVersion);
    void showFailed(const QString& error);

  signals:
    // The user gave up waiting for the check.
    void cancelled();

  private:
    void setButtons(bool available);

    UrlOpener openUrl_;
    QLabel* heading_;
    QLabel* message_;
    QLabel* packagesNote_;
    QProgressBar* busy_;
    QPushButton* notesButton_;
    QPushButton* downloadButton_;
    QPushButton* closeButton_;
    QPushButton* cancelButton_;
    Release release_;
    bool checking_ = false;
};

}  // namespace ostrelle::app
