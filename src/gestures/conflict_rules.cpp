#include "gestures/conflict_rules.h"

namespace ostrelle {
namespace {

SystemConflict withoutPane(std::string text) {
    return {std::move(text), std::nullopt};
}

}  // namespace

std::optional<SystemConflict> pointerMovementConflict(std::string_view id) {
    if (id.starts_with("2.restSwipe.")) return withoutPane("The swiping finger also moves the pointer.");
    if (id.starts_with("3.restSwipe.")) return withoutPane("Two moving fingers may also scroll.");
    // The trailing dot keeps the plain "3.restRemove" out: its remaining finger does not slide.
    if (id.starts_with("3.restRemove.")) return withoutPane("The remaining finger also moves the pointer.");
    return std::nullopt;
}

std::optional<SystemConflict> oneFingerConflict(const GestureDef& def) {
    if (def.fingers != 1) return std::nullopt;
    if (def.motion == Motion::swipe) return withoutPane("Moving one finger moves the pointer.");
    return withoutPane("One finger is used for normal clicks.");
}

std::optional<SystemConflict> drawnShapeConflict(
    int fingers, const std::function<std::optional<SystemConflict>(const Gesture&)>& conflictOf) {
    for (SwipeDirection direction : allSwipeDirections) {
        if (auto conflict = conflictOf(Gesture(Gesture::genericID(fingers, Motion::swipe, direction)))) {
            return conflict;
        }
    }
    return std::nullopt;
}

}  // namespace ostrelle
