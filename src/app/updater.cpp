#include "app/updater.h"

#include <QDesktopServices>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <cmath>
#include <utility>

#include "app/update_schedule.h"
#include "support/log.h"

namespace ostrelle::app {
namespace {

constexpr const char* unreachableText =
    "The update server (%1) could not be reached. Check the internet connection and try again.";
constexpr const char* timedOutText = "The update server (%1) did not answer in time. Try again later.";
constexpr const char* httpErrorText = "The update server answered with an error (HTTP %1).";
constexpr const char* noFeedText = "No update feed is set.";
constexpr const char* userAgent = "Ostrelle/" OSTRELLE_VERSION;

std::chrono::milliseconds toMilliseconds(double seconds) {
    return std::chrono::milliseconds(static_cast<std::int64_t>(std::ceil(seconds * 1000)));
}

}  // namespace

QUrl Updater::configuredFeed() {
    const QByteArray chosen = qgetenv(updateFeedVariable);
    return QUrl(chosen.isEmpty() ? QString::fromLatin1(defaultUpdateFeed) : QString::fromUtf8(chosen));
}

Updater::Updater(Settings& settings, QObject* parent) : Updater(settings, Options{}, parent) {}

Updater::Updater(Settings& settings, Options options, QObject* parent)
    : QObject(parent), settings_(settings), options_(std::move(options)) {
    if (!options_.openUrl) options_.openUrl = [](const QUrl& url) { return QDesktopServices::openUrl(url); };
    nextCheck_.setSingleShot(true);
    // A day-long wait needs no precision; a coarse timer lets the system bundle wake-ups.
    nextCheck_.setTimerType(Qt::VeryCoarseTimer);
    connect(&nextCheck_, &QTimer::timeout, this, &Updater::startCheck);
    timeout_.setSingleShot(true);
    connect(&timeout_, &QTimer::timeout, this, [this] {
        QNetworkReply* reply = reply_.data();
        if (!reply) return;
        timedOut_ = true;
        reply->abort();
    });
    scheduleNext(options_.startDelay);
}

Updater::~Updater() {
    if (QNetworkReply* reply = reply_.data()) {
        // Aborting finishes the reply at once; nothing of a going updater should answer it.
        reply->disconnect(this);
        reply->abort();
    }
    if (UpdateDialog* dialog = dialog_.data()) dialog->deleteLater();
}

bool Updater::automaticChecks() const {
    return settings_.boolValue(update_settings::automaticChecks).value_or(true);
}

void Updater::setAutomaticChecks(bool allowed) {
    if (allowed == automaticChecks()) return;
    settings_.setBool(update_settings::automaticChecks, allowed);
    scheduleNext();
    emit automaticChecksChanged(allowed);
}

void Updater::checkForUpdates() {
    onDemand_ = true;
    UpdateDialog& dialog = openDialog();
    dialog.showChecking();
    if (!reply_) startCheck();
}

void Updater::startCheck() {
    nextCheck_.stop();
    if (reply_) return;
    if (!options_.feed.isValid() || options_.feed.isEmpty()) {
        present({UpdateCheckResult::Outcome::failed, std::nullopt, QString::fromLatin1(noFeedText)});
        return;
    }
    if (!network_) network_ = new QNetworkAccessManager(this);
    QNetworkRequest request(options_.feed);
    request.setHeader(QNetworkRequest::UserAgentHeader, QByteArray(userAgent));
    timedOut_ = false;
    reply_ = network_->get(request);
    connect(reply_, &QNetworkReply::finished, this, &Updater::finish);
    timeout_.start(options_.timeout);
    emit checkingChanged(true);
}

void Updater::finish() {
    QNetworkReply* reply = reply_;
    if (!reply) return;
    reply_ = nullptr;
    reply->deleteLater();
    timeout_.stop();
    emit checkingChanged(false);
    settings_.setData(update_settings::lastCheck, formatCheckTime(options_.clock()));
    present(readReply(*reply));
    scheduleNext();
}

UpdateCheckResult Updater::readReply(QNetworkReply& reply) const {
    using Outcome = UpdateCheckResult::Outcome;
    const QString host = options_.feed.host().isEmpty() ? options_.feed.toString() : options_.feed.host();
    const int status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (timedOut_) return {Outcome::failed, std::nullopt, QString::fromUtf8(timedOutText).arg(host)};
    if (status >= 400) return {Outcome::failed, std::nullopt, QString::fromUtf8(httpErrorText).arg(status)};
    if (reply.error() != QNetworkReply::NoError) {
        Log::warning("update check failed: " + reply.errorString().toStdString());
        return {Outcome::failed, std::nullopt, QString::fromUtf8(unreachableText).arg(host)};
    }
    auto parsed = parseAppcast(reply.readAll());
    if (const auto* error = std::get_if<FeedError>(&parsed))
        return {Outcome::failed, std::nullopt, error->description};
    if (auto newest = newestAbove(std::get<std::vector<Release>>(parsed), options_.runningVersion))
        return {Outcome::available, std::move(newest), {}};
    return {Outcome::upToDate, std::nullopt, {}};
}

void Updater::present(const UpdateCheckResult& result) {
    const bool onDemand = std::exchange(onDemand_, false);
    emit checkFinished(result, onDemand);
    // An automatic check that found nothing new, or failed, keeps quiet.
    if (!onDemand && result.outcome != UpdateCheckResult::Outcome::available) return;
    // The user closed the busy dialog: the answer is no longer wanted.
    const UpdateDialog* open = dialog_.data();
    if (onDemand && (!open || !open->isVisible())) return;
    UpdateDialog& dialog = openDialog();
    switch (result.outcome) {
        case UpdateCheckResult::Outcome::available:
            dialog.showAvailable(*result.release, options_.runningVersion);
            break;
        case UpdateCheckResult::Outcome::upToDate:
            dialog.showUpToDate(options_.runningVersion);
            break;
        case UpdateCheckResult::Outcome::failed:
            dialog.showFailed(result.error);
            break;
    }
}

UpdateDialog& Updater::openDialog() {
    UpdateDialog* dialog = dialog_.data();
    if (!dialog) {
        dialog = new UpdateDialog(options_.openUrl);
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        connect(dialog, &UpdateDialog::cancelled, this, [this] {
            onDemand_ = false;
            if (QNetworkReply* reply = reply_.data()) reply->abort();
        });
        dialog_ = dialog;
    }
    dialog->show();
    dialog->raise();
    dialog->activateWindow();
    return *dialog;
}

void Updater::scheduleNext(std::chrono::milliseconds atLeast) {
    nextCheck_.stop();
    const auto wait = secondsUntilNextCheck(
        automaticChecks(), parseCheckTime(settings_.dataValue(update_settings::lastCheck)), options_.clock());
    if (!wait) return;
    nextCheck_.start(std::max(toMilliseconds(*wait), atLeast));
}

}  // namespace ostrelle::app
