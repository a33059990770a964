#pragma once

#include <functional>
#include <optional>
#include <string_view>

#include "gestures/gesture_catalog.h"
#include "gestures/system_conflicts.h"

namespace ostrelle {

// The clashes that hold whatever the system: fingers that keep moving the pointer or scrolling
// while a rest gesture is made. Judged by the id alone; nothing could switch them off.
std::optional<SystemConflict> pointerMovementConflict(std::string_view id);

// One finger is the pointer and the plain click everywhere; nothing for other finger counts.
std::optional<SystemConflict> oneFingerConflict(const GestureDef& def);

// A drawn shape is a swipe of its finger count in some direction: the first plain swipe, in the
// order up, down, left, right, that clashes by `conflictOf` speaks for it.
std::optional<SystemConflict> drawnShapeConflict(
    int fingers, const std::function<std::optional<SystemConflict>(const Gesture&)>& conflictOf);

inline bool isVertical(std::optional<SwipeDirection> direction) {
    return direction == SwipeDirection::up || direction == SwipeDirection::down;
}

}  // namespace ostrelle
