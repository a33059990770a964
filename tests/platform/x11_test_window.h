#pragma once

#include <chrono>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

struct _XDisplay;

namespace ostrelle::testing {

// A key or button event as an X client receives it; equal by kind and code, the modifier state
// being checked where it matters.
struct XInputEvent {
    enum class Kind { keyPress, keyRelease, buttonPress, buttonRelease };
    Kind kind = Kind::keyPress;
    unsigned code = 0;   // X keycode (evdev + 8) or button number
    unsigned state = 0;  // modifier and button mask at the time

    friend bool operator==(const XInputEvent& a, const XInputEvent& b) {
        return a.kind == b.kind && a.code == b.code;
    }
};
std::ostream& operator<<(std::ostream& out, const XInputEvent& event);

// A window of a client of its own that covers the screen, holds the input focus and the pointer,
// and receives every key and button event, as the application in front would.
class X11TestWindow {
  public:
    static constexpr std::chrono::seconds defaultLimit{5};

    // Connects to `display`, maps the window and waits (bounded) until it is shown and focused;
    // throws when it can't.
    explicit X11TestWindow(const std::string& display);
    ~X11TestWindow();
    X11TestWindow(const X11TestWindow&) = delete;
    X11TestWindow& operator=(const X11TestWindow&) = delete;

    // The next key or button event, waiting at most `limit`; nothing when none came.
    std::optional<XInputEvent> next(std::chrono::milliseconds limit = defaultLimit);
    // Events until `count` came or `limit` passed in all.
    std::vector<XInputEvent> take(std::size_t count, std::chrono::milliseconds limit = defaultLimit);

  private:
    _XDisplay* display_ = nullptr;
    unsigned long window_ = 0;
};

}  // namespace ostrelle::testing
