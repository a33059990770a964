#include "platform/linux/x11_active_window.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>

namespace ostrelle {

X11ActiveWindow::X11ActiveWindow(X11Connection& connection)
    : connection_(connection), activeAtom_(XInternAtom(connection.display(), "_NET_ACTIVE_WINDOW", False)) {}

std::optional<Window> X11ActiveWindow::activeWindow() const {
    Atom type = None;
    int format = 0;
    unsigned long count = 0;
    unsigned long remaining = 0;
    unsigned char* data = nullptr;
    const int status = XGetWindowProperty(connection_.display(), connection_.root(), activeAtom_, 0, 1, False,
                                          XA_WINDOW, &type, &format, &count, &remaining, &data);
    std::optional<Window> window;
    // Xlib hands 32-bit properties over as longs.
    if (status == Success && type == XA_WINDOW && format == 32 && count == 1) {
        const Window value = *reinterpret_cast<const unsigned long*>(data);
        if (value != None) window = value;
    }
    if (data != nullptr) XFree(data);
    return window;
}

std::optional<WindowClass> X11ActiveWindow::active() const {
    // The window may close between the two reads; then the server answers BadWindow.
    X11ErrorTrap trap(connection_);
    const std::optional<Window> window = activeWindow();
    if (!window) return std::nullopt;
    XClassHint hint{};
    const Status read = XGetClassHint(connection_.display(), *window, &hint);
    std::optional<WindowClass> result;
    if (read != 0 && trap.sync() == Success) {
        result = WindowClass{hint.res_name != nullptr ? hint.res_name : "",
                             hint.res_class != nullptr ? hint.res_class : ""};
    }
    if (hint.res_name != nullptr) XFree(hint.res_name);
    if (hint.res_class != nullptr) XFree(hint.res_class);
    if (result && result->instanceName.empty() && result->className.empty()) return std::nullopt;
    return result;
}

}  // namespace ostrelle
