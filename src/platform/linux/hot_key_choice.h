#pragma once

#include <memory>

#include "engine/hot_key_registrar.h"
#include "platform/linux/epoll_main_queue.h"
#include "platform/linux/x11_connection.h"
#include "support/default_paths.h"

namespace ostrelle {

// For desktops that let no program hold a global shortcut: every registration is `unavailable`,
// and the engine tells the user to bind the command line's toggle in the desktop's settings.
class UnavailableHotKeyRegistrar final : public HotKeyRegistrar {
  public:
    Registration registerHotKey(std::uint32_t, std::uint32_t) override { return {unavailable, std::nullopt}; }
    void unregisterHotKey(Reference) override {}
    void setPressHandler(std::function<void()>) override {}
};

// The session's way to hold the toggle key: an X11 session (DISPLAY set, XDG_SESSION_TYPE not
// "wayland") grabs keys on `x11`; a Wayland session asks the desktop portal where it answers;
// anything else (the console, a Wayland desktop without the portal, an unreachable X server)
// gets the unavailable registrar. `x11` may be null; it and `queue` must outlive the result.
std::unique_ptr<HotKeyRegistrar> chooseHotKeyRegistrar(const EnvironmentLookup& environment,
                                                       X11Connection* x11, EpollMainQueue& queue);

}  // namespace ostrelle
