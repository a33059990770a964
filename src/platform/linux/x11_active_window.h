#pragma once

#include <optional>
#include <string>

#include "platform/linux/x11_connection.h"

namespace ostrelle {

// The two names of a window's WM_CLASS: the instance (often the program's file name, "firefox")
// and the class ("firefox", "Code").
struct WindowClass {
    std::string instanceName;
    std::string className;

    friend bool operator==(const WindowClass&, const WindowClass&) = default;
};

// The window the user works in, as the window manager announces it in the root window's
// _NET_ACTIVE_WINDOW (every current X11 window manager does).
class X11ActiveWindow {
  public:
    explicit X11ActiveWindow(X11Connection& connection);

    // Nothing when no window is active, the window manager doesn't say, or the window is gone
    // or has no class.
    std::optional<WindowClass> active() const;

  private:
    std::optional<Window> activeWindow() const;

    X11Connection& connection_;
    Atom activeAtom_;
};

}  // namespace ostrelle
