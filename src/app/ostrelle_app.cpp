#include "app/ostrelle_app.h"

#include <QApplication>
#include <QEvent>
#include <QPalette>
#include <QTimer>

#include "app/main_window.h"
#include "app/queue_bridge.h"
#include "app/status_icon.h"
#include "app/tray_menu.h"
#include "gestures/desktop_conflicts.h"
#include "platform/linux/desktop_gesture_settings.h"
#include "platform/linux/evdev_touch_source.h"
#include "support/log.h"

namespace ostrelle::app {
namespace {

using Answer = std::function<std::string(const std::string&)>;

std::unique_ptr<TouchSource> touchSource(EpollMainQueue& queue,
                                         std::optional<std::vector<RecordingEvent>> replay) {
    // Once played out, the pad is just quiet; the program keeps running.
    if (replay) return std::make_unique<RecordingPlayback>(queue, std::move(*replay), [] {});
    return std::make_unique<EvdevTouchSource>(queue);
}

// For status: how many touchpads are read, as the headless service tells; nothing for a recording.
std::function<int()> touchpadCount(TouchSource* source) {
    auto* touchpads = dynamic_cast<EvdevTouchSource*>(source);
    if (!touchpads) return nullptr;
    return [touchpads] { return touchpads->openTouchpads(); };
}

}  // namespace

std::variant<std::unique_ptr<OstrelleApp>, std::string> OstrelleApp::start(
    EpollMainQueue& queue, const EnvironmentLookup& environment, AppOptions options) {
    // First of all: whichever instance runs (this program or the headless service) quits, so
    // that only one acts on gestures.
    const auto folder = instanceFolder(environment);
    if (const auto* problem = std::get_if<std::string>(&folder)) return *problem;
    // Requests that come before the engine exists wait in the socket until it does.
    auto answer = std::make_shared<Answer>();
    auto taken =
        InstanceServer::takeOver(queue, std::get<std::filesystem::path>(folder),
                                 [answer](const std::string& request) { return (*answer)(request); });
    if (const auto* problem = std::get_if<std::string>(&taken)) return *problem;
    auto instance = std::move(std::get<std::unique_ptr<InstanceServer>>(taken));
    Log::prune();
    return std::unique_ptr<OstrelleApp>(
        new OstrelleApp(queue, environment, std::move(options), std::move(instance), answer));
}

OstrelleApp::OstrelleApp(EpollMainQueue& queue, const EnvironmentLookup& environment, AppOptions options,
                         std::unique_ptr<InstanceServer> instance, const std::shared_ptr<Answer>& answer)
    : instance_(std::move(instance)),
      settings_(std::make_unique<SettingsFile>(defaultSettingsPath(environment))),
      store_(std::make_unique<BindingStore>(
          options.bindings.value_or(defaultBindingsPath(environment, PathConvention::xdg)),
          settings_->boolValue(settings_keys::launchedBefore).value_or(false))),
      source_(touchSource(queue, std::move(options.replay))),
      desktop_(std::make_unique<DesktopSession>(queue, environment, options.dryRun)),
      service_(std::make_unique<InstanceService>(InstanceService::Parts{
          .queue = queue,
          .source = *source_,
          .system = desktop_->system(),
          .settings = *settings_,
          .store = *store_,
          .hotKeys = desktop_->hotKeys(),
          .touchpadsOpen = touchpadCount(source_.get()),
          .host = desktop_->host(),
          // Both come from the socket, inside the queue's work: the window and the quit follow
          // once that work is done.
          .quit = [this] { QTimer::singleShot(0, this, &OstrelleApp::quit); },
          .open = [this] { QTimer::singleShot(0, this, &OstrelleApp::openMainWindow); },
      })),
      context_{.engine = service_->engine(),
               .store = *store_,
               .settings = *settings_,
               .host = desktop_->host(),
               .hasHaptics = desktop_->system().feedback().hasHaptics(),
               .keysError = desktop_->system().keyCodes() ? desktop_->system().keyCodes()->unavailableReason()
                                                          : std::nullopt,
               .updater = nullptr} {
    context_.updater = [this]() -> Updater& { return updater(); };
    // The desktop's own gesture settings are read when the list first asks, not at start.
    context_.conflict = [environment,
                         settings = std::optional<DesktopGestureSettings>()](const Gesture& gesture) mutable {
        if (!settings) settings = readDesktopGestureSettings(environment);
        return desktopConflict(gesture, *settings);
    };
    *answer = [this](const std::string& request) { return service_->answer(request); };

    watches_ = std::make_unique<InstanceWatches>(queue, *service_, settings_->path(), store_->fileURL());
    bridge_ = std::make_unique<QueueBridge>(queue);

    menu_ = std::make_unique<TrayMenu>(
        engine(), [this] { openMainWindow(); }, [this] { quit(); });
    if (QSystemTrayIcon::isSystemTrayAvailable()) {
        tray_ = std::make_unique<QSystemTrayIcon>();
        tray_->setContextMenu(menu_.get());
        connect(tray_.get(), &QSystemTrayIcon::activated, this,
                [this](QSystemTrayIcon::ActivationReason reason) {
                    if (reason == QSystemTrayIcon::Trigger || reason == QSystemTrayIcon::DoubleClick)
                        openMainWindow();
                });
        showStatus();
        tray_->show();
        qApp->installEventFilter(this);
    }
    engineUpdates_ = engine().observers.add([this] { showStatus(); });
    // Automatic update checks are scheduled once the program runs; the first waits a while.
    QTimer::singleShot(0, this, [this] { updater(); });
    // Without a tray the window is the only way in.
    if (!tray_ || options.openWindow) openMainWindow();
}

OstrelleApp::~OstrelleApp() {
    engine().observers.remove(engineUpdates_);
    delete window_.data();
}

Updater& OstrelleApp::updater() {
    if (!updater_) updater_ = std::make_unique<Updater>(*settings_);
    return *updater_;
}

void OstrelleApp::showStatus(bool redraw) {
    if (!tray_) return;
    // The engine publishes many changes; the icon is drawn again only when the switch or the
    // palette (light or dark) changed.
    const bool active = engine().isEnabled();
    if (!redraw && shownActive_ == active) return;
    shownActive_ = active;
    tray_->setIcon(statusIcon(active, QApplication::palette().color(QPalette::WindowText)));
    tray_->setToolTip(active ? activeIconName : pausedIconName);
}

bool OstrelleApp::eventFilter(QObject* watched, QEvent* event) {
    if (watched == qApp && event->type() == QEvent::ApplicationPaletteChange) showStatus(true);
    return QObject::eventFilter(watched, event);
}

void OstrelleApp::openMainWindow() {
    MainWindow* window = window_.data();
    if (!window) {
        window = new MainWindow(context_);
        // A closed window gives its memory back; the next opening builds it anew.
        window->setAttribute(Qt::WA_DeleteOnClose, true);
        window->setAsksBeforeClosing(tray_ == nullptr);
        connect(window, &MainWindow::quitRequested, this, &OstrelleApp::quit);
        window_ = window;
    }
    window->show();
    window->raise();
    window->activateWindow();
}

void OstrelleApp::quit() {
    if (window_) window_->hide();
    QCoreApplication::quit();
}

}  // namespace ostrelle::app
