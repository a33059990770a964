#include "gestures/system_conflicts.h"

#include <cstdint>
#include <string_view>

#include "gestures/conflict_rules.h"
#include "gestures/gesture_catalog.h"

namespace ostrelle {
namespace {

// A trackpad preference with the value that counts when nothing usable is stored. The system
// treats the four-finger swipes as on and the three-finger ones as off until the user says
// otherwise, hence the different defaults.
struct Preference {
    std::string_view key;
    std::int64_t fallback;
};

constexpr Preference tapToClick{"Clicking", 0};
constexpr Preference fourFingerVertical{"TrackpadFourFingerVertSwipeGesture", 2};
constexpr Preference fourFingerHorizontal{"TrackpadFourFingerHorizSwipeGesture", 2};
constexpr Preference threeFingerDrag{"TrackpadThreeFingerDrag", 0};
constexpr Preference threeFingerVertical{"TrackpadThreeFingerVertSwipeGesture", 0};
constexpr Preference threeFingerHorizontal{"TrackpadThreeFingerHorizSwipeGesture", 0};
constexpr Preference threeFingerTap{"TrackpadThreeFingerTapGesture", 0};

// The swipe keys name their system gesture by number; this one is Mission Control / full-screen apps.
constexpr std::int64_t systemSwipeValue = 2;

std::int64_t read(const TrackpadPreferences& preferences, const Preference& preference) {
    return preferences.integer(preference.key).value_or(preference.fallback);
}

bool isOn(const TrackpadPreferences& preferences, const Preference& preference) {
    return read(preferences, preference) != 0;
}

bool isSystemSwipe(const TrackpadPreferences& preferences, const Preference& preference) {
    return read(preferences, preference) == systemSwipeValue;
}

SystemConflict withTrackpadPane(std::string text) {
    return {std::move(text), SettingsPane::trackpad()};
}

std::optional<SystemConflict> swipeConflict(const GestureDef& def, const TrackpadPreferences& preferences) {
    const bool vertical = isVertical(def.direction);
    switch (def.fingers) {
        case 4:
            if (vertical && isSystemSwipe(preferences, fourFingerVertical)) {
                return withTrackpadPane("Four-finger swipes open Mission Control or App Exposé.");
            }
            if (!vertical && isSystemSwipe(preferences, fourFingerHorizontal)) {
                return withTrackpadPane("Four-finger swipes switch between full-screen apps.");
            }
            return std::nullopt;
        case 3:
            // Three-finger drag takes every three-finger swipe, whatever the swipe keys say.
            if (isOn(preferences, threeFingerDrag)) {
                return SystemConflict{"Three-finger drag is turned on (Accessibility › Pointer Control).",
                                      SettingsPane::accessibility()};
            }
            if (vertical && isSystemSwipe(preferences, threeFingerVertical)) {
                return withTrackpadPane("Three-finger swipes open Mission Control or App Exposé.");
            }
            if (!vertical && isSystemSwipe(preferences, threeFingerHorizontal)) {
                return withTrackpadPane("Three-finger swipes switch between full-screen apps.");
            }
            return std::nullopt;
        default:
            return std::nullopt;
    }
}

std::optional<SystemConflict> conflictOfID(const Gesture& gesture, const TrackpadPreferences& preferences) {
    const std::string_view id = gesture.id;
    if (id.find(".restTap.") != std::string_view::npos && isOn(preferences, tapToClick)) {
        return withTrackpadPane("With Tap to click on, the tapping finger also clicks.");
    }
    if (auto pointer = pointerMovementConflict(id)) return pointer;

    const auto def = gesture.def();
    if (!def) return std::nullopt;
    if (auto oneFinger = oneFingerConflict(*def)) return oneFinger;
    if (def->motion == Motion::swipe) return swipeConflict(*def, preferences);
    if (def->motion == Motion::tap && def->fingers == 3 && isOn(preferences, threeFingerTap)) {
        return withTrackpadPane("Three-finger tap is Look Up.");
    }
    return std::nullopt;
}

}  // namespace

SettingsPane SettingsPane::trackpad() {
    return {"Trackpad", "x-apple.systempreferences:com.apple.preference.trackpad", {}};
}

SettingsPane SettingsPane::accessibility() {
    return {"Accessibility", "x-apple.systempreferences:com.apple.preference.universalaccess", {}};
}

std::optional<SystemConflict> systemConflict(const Gesture& gesture, const TrackpadPreferences& preferences) {
    if (!gesture.custom) return conflictOfID(gesture, preferences);
    return drawnShapeConflict(gesture.custom->fingers,
                              [&](const Gesture& swipe) { return conflictOfID(swipe, preferences); });
}

}  // namespace ostrelle
