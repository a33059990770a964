#include "touchpad/touchpad_notices.h"

namespace ostrelle {

std::optional<std::string> limitationNotice(const TouchpadDescription& device) {
    if (!device.semiMultitouch) return std::nullopt;
    return "\"" + device.name +
           "\" reports only the box around the fingers (semi-multitouch): taps, clicks and swipes work, but "
           "rest "
           "gestures cannot be told apart on it";
}

}  // namespace ostrelle
