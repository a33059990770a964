#include "platform/linux/xtest_key_output.h"

#include <X11/Xlib.h>
#include <X11/extensions/XTest.h>
#include <fmt/format.h>
#include <linux/input-event-codes.h>

namespace ostrelle {
namespace {

// X numbers keys from 8 up, the evdev codes shifted, and keeps them below 256.
constexpr unsigned xKeycodeOffset = 8;
constexpr unsigned highestXKeycode = 255;

// The X button numbers of the evdev buttons; 0 for a code that is no button.
unsigned xButton(std::uint16_t code) {
    switch (code) {
        case BTN_LEFT:
            return 1;
        case BTN_MIDDLE:
            return 2;
        case BTN_RIGHT:
            return 3;
        default:
            return 0;
    }
}

}  // namespace

std::variant<std::unique_ptr<XTestKeyOutput>, std::string> XTestKeyOutput::create(
    const std::string& displayName) {
    Display* display = XOpenDisplay(displayName.c_str());
    if (display == nullptr) return fmt::format(fmt::runtime(noDisplayText), displayName);
    int eventBase = 0, errorBase = 0, major = 0, minor = 0;
    if (XTestQueryExtension(display, &eventBase, &errorBase, &major, &minor) == False) {
        XCloseDisplay(display);
        return fmt::format(fmt::runtime(noXTestText), displayName);
    }
    return std::unique_ptr<XTestKeyOutput>(new XTestKeyOutput(display));
}

XTestKeyOutput::~XTestKeyOutput() {
    XCloseDisplay(display_);
}

void XTestKeyOutput::postKeyCode(std::uint16_t code, bool down) {
    if (const unsigned button = xButton(code); button != 0) {
        XTestFakeButtonEvent(display_, button, down ? True : False, CurrentTime);
    } else if (code + xKeycodeOffset <= highestXKeycode) {
        XTestFakeKeyEvent(display_, code + xKeycodeOffset, down ? True : False, CurrentTime);
    } else {
        return;  // a key X cannot name, skipped as a refused event is
    }
    // Sent now, not when the next request happens to fill the buffer.
    XFlush(display_);
}

}  // namespace ostrelle
