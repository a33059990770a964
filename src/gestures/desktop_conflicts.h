#pragma once

#include <optional>

#include "gestures/desktop_gesture_settings.h"
#include "gestures/gesture.h"
#include "gestures/system_conflicts.h"

namespace ostrelle {

// The Linux counterpart of systemConflict: whether the gesture collides with the desktop's own
// touchpad gestures (tap to click, GNOME's three-finger and KDE Plasma's four-finger swipes), or
// moves the pointer while it is made. Pure: the settings are read by the caller.
std::optional<SystemConflict> desktopConflict(const Gesture& gesture, const DesktopGestureSettings& settings);

}  // namespace ostrelle
