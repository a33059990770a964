#pragma once

#include <optional>
#include <string>

#include "touchpad/touchpad_description.h"

namespace ostrelle {

// What to log once about a device whose reports keep some gestures apart, or nothing: a
// semi-multitouch pad reports the corners of the box around the fingers, not the fingers.
std::optional<std::string> limitationNotice(const TouchpadDescription& device);

}  // namespace ostrelle
