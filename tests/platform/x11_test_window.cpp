#include "platform/x11_test_window.h"

#include <X11/Xlib.h>
#include <poll.h>

#include <stdexcept>

namespace ostrelle::testing {
namespace {

constexpr unsigned windowSize = 4096;  // larger than any test screen, so the pointer is always in it

using Clock = std::chrono::steady_clock;

// Waits for an event of the connection until `deadline`; false when none came in time.
bool waitForEvent(Display* display, Clock::time_point deadline) {
    while (XPending(display) == 0) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
        if (left.count() <= 0) return false;
        pollfd readable{ConnectionNumber(display), POLLIN, 0};
        poll(&readable, 1, static_cast<int>(left.count()));
    }
    return true;
}

}  // namespace

std::ostream& operator<<(std::ostream& out, const XInputEvent& event) {
    constexpr const char* kinds[] = {"key press", "key release", "button press", "button release"};
    return out << kinds[static_cast<int>(event.kind)] << " " << event.code << " (state " << event.state
               << ")";
}

X11TestWindow::X11TestWindow(const std::string& display) : display_(XOpenDisplay(display.c_str())) {
    if (display_ == nullptr) throw std::runtime_error("cannot open the X display " + display);
    const Window root = DefaultRootWindow(display_);
    window_ = XCreateSimpleWindow(display_, root, 0, 0, windowSize, windowSize, 0, 0, 0);
    XSelectInput(display_, window_,
                 StructureNotifyMask | KeyPressMask | KeyReleaseMask | ButtonPressMask | ButtonReleaseMask);
    XMapWindow(display_, window_);
    const auto deadline = Clock::now() + defaultLimit;
    bool mapped = false;
    while (!mapped && waitForEvent(display_, deadline)) {
        XEvent event;
        XNextEvent(display_, &event);
        mapped = event.type == MapNotify;
    }
    if (!mapped) {
        XCloseDisplay(display_);
        throw std::runtime_error("the test window was not mapped on " + display);
    }
    // Keys go to the focus, buttons to the window under the pointer; the round trip makes sure
    // both hold before any other client sends.
    XSetInputFocus(display_, window_, RevertToParent, CurrentTime);
    XWarpPointer(display_, None, window_, 0, 0, 0, 0, 10, 10);
    XSync(display_, False);
}

X11TestWindow::~X11TestWindow() {
    XCloseDisplay(display_);
}

std::optional<XInputEvent> X11TestWindow::next(std::chrono::milliseconds limit) {
    const auto deadline = Clock::now() + limit;
    while (waitForEvent(display_, deadline)) {
        XEvent event;
        XNextEvent(display_, &event);
        // The X event types of keys and buttons follow one another in the order of `Kind`.
        if (event.type >= KeyPress && event.type <= ButtonRelease) {
            const auto kind = static_cast<XInputEvent::Kind>(event.type - KeyPress);
            const bool key = event.type <= KeyRelease;
            return XInputEvent{kind, key ? event.xkey.keycode : event.xbutton.button,
                               key ? event.xkey.state : event.xbutton.state};
        }
    }
    return std::nullopt;
}

std::vector<XInputEvent> X11TestWindow::take(std::size_t count, std::chrono::milliseconds limit) {
    const auto deadline = Clock::now() + limit;
    std::vector<XInputEvent> events;
    while (events.size() < count) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
        const auto event = next(std::max(left, std::chrono::milliseconds(0)));
        if (!event) break;
        events.push_back(*event);
    }
    return events;
}

}  // namespace ostrelle::testing
