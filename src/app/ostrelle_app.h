#pragma once

#include <QObject>
#include <QPointer>
#include <QSystemTrayIcon>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "app/app_context.h"
#include "app/main_window.h"
#include "app/updater.h"
#include "engine/recording_playback.h"
#include "platform/linux/desktop_session.h"
#include "platform/linux/epoll_main_queue.h"
#include "platform/linux/instance_service.h"
#include "platform/linux/instance_socket.h"
#include "platform/linux/instance_watches.h"
#include "platform/linux/settings_file.h"

namespace ostrelle::app {

class QueueBridge;
class TrayMenu;

// How this run differs from the everyday one.
struct AppOptions {
    std::optional<std::filesystem::path> bindings;  // instead of the platform's bindings file
    // Touches from a recording, played in real time, instead of the touchpads.
    std::optional<std::vector<RecordingEvent>> replay;
    bool dryRun = false;  // actions are recorded as key codes, not sent
    bool openWindow = false;
};

// The program's shell: takes over from any running instance (the headless service too), then
// creates in order the log's pruning, the bindings store, the engine with the touch source, the
// status icon with its menu; the main window and the updater are made on first use. Answers the
// instance socket (quit, toggle, open, status) for as long as it lives. Where the desktop has no
// tray, the window opens at start and closing it asks whether to keep running.
class OstrelleApp final : public QObject {
  public:
    static std::variant<std::unique_ptr<OstrelleApp>, std::string> start(EpollMainQueue& queue,
                                                                         const EnvironmentLookup& environment,
                                                                         AppOptions options);
    ~OstrelleApp() override;
    OstrelleApp(const OstrelleApp&) = delete;
    OstrelleApp& operator=(const OstrelleApp&) = delete;

    AppContext& context() { return context_; }
    GestureEngine& engine() { return service_->engine(); }
    // Opens the main window, or brings the open one to the front.
    void openMainWindow();
    MainWindow* mainWindow() const { return window_; }
    QSystemTrayIcon* trayIcon() const { return tray_.get(); }
    TrayMenu* trayMenu() const { return menu_.get(); }
    Updater& updater();

  private:
    OstrelleApp(EpollMainQueue& queue, const EnvironmentLookup& environment, AppOptions options,
                std::unique_ptr<InstanceServer> instance,
                const std::shared_ptr<std::function<std::string(const std::string&)>>& answer);
    void showStatus(bool redraw = false);
    bool eventFilter(QObject* watched, QEvent* event) override;
    void quit();

    std::unique_ptr<InstanceServer> instance_;
    std::unique_ptr<SettingsFile> settings_;
    std::unique_ptr<BindingStore> store_;
    std::unique_ptr<TouchSource> source_;
    std::unique_ptr<DesktopSession> desktop_;
    std::unique_ptr<InstanceService> service_;
    AppContext context_;
    std::unique_ptr<InstanceWatches> watches_;
    std::unique_ptr<QueueBridge> bridge_;
    std::unique_ptr<TrayMenu> menu_;
    std::unique_ptr<QSystemTrayIcon> tray_;
    QPointer<MainWindow> window_;
    std::unique_ptr<Updater> updater_;
    ObserverList::Token engineUpdates_ = 0;
    std::optional<bool> shownActive_;  // what the tray's icon shows now
};

}  // namespace ostrelle::app
