#pragma once

#include <memory>
#include <optional>

#include "actions/action_host.h"
#include "actions/dry_run_system_port.h"
#include "actions/linux_actions.h"
#include "engine/hot_key_registrar.h"
#include "platform/linux/desktop_bell.h"
#include "platform/linux/desktop_entry_launcher.h"
#include "platform/linux/epoll_main_queue.h"
#include "platform/linux/gio_app_files.h"
#include "platform/linux/linux_system_port.h"
#include "platform/linux/x11_active_window.h"
#include "platform/linux/x11_connection.h"
#include "support/default_paths.h"

namespace ostrelle {

// What the engine's actions reach on the user's desktop, put together once per process by the
// headless service and the desktop application alike: the desktop's chords, the X server where
// there is one (watched on `queue`), the keyboard layout, installed applications, the key output
// and the toggle key's registrar. A dry run records actions as Linux key codes instead of sending
// them. `queue` must outlive the session.
class DesktopSession {
  public:
    DesktopSession(EpollMainQueue& queue, const EnvironmentLookup& environment, bool dryRun);
    DesktopSession(const DesktopSession&) = delete;
    DesktopSession& operator=(const DesktopSession&) = delete;

    ActionHost host() const;
    // The real output, or the dry run's recorder.
    SystemPort& system() { return desktop_ ? static_cast<SystemPort&>(*desktop_) : dryRun_; }
    DryRunSystemPort& dryRun() { return dryRun_; }
    HotKeyRegistrar& hotKeys() { return *hotKeys_; }
    const LinuxActions& linuxActions() const { return linuxActions_; }
    const GioAppFiles& applications() const { return applications_; }
    // Null without an X server.
    X11Connection* x11() const { return x11_.get(); }

  private:
    LinuxActions linuxActions_;
    std::unique_ptr<X11Connection> x11_;
    std::optional<X11ActiveWindow> activeWindow_;
    std::unique_ptr<KeyboardLayout> layout_;
    GioAppFiles applications_;
    DryRunSystemPort dryRun_;
    DesktopBell bell_;
    DesktopEntryLauncher launcher_;
    std::optional<LinuxSystemPort> desktop_;
    std::unique_ptr<HotKeyRegistrar> hotKeys_;
};

}  // namespace ostrelle
