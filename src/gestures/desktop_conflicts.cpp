#include "gestures/desktop_conflicts.h"

#include <string>
#include <string_view>

#include "gestures/conflict_rules.h"

namespace ostrelle {
namespace {

// GNOME Shell took three-finger swipes for itself in version 40. An unknown version counts as
// 40 or later: the 3.x series is long out of every supported distribution.
constexpr int firstGnomeShellWithThreeFingerSwipes = 40;

constexpr std::string_view gnomeWorkspaces =
    "GNOME switches workspaces with three-finger swipes left and right; no setting turns this off.";
constexpr std::string_view gnomeOverview =
    "GNOME opens the overview and app grid with three-finger swipes up and down; no setting turns this off.";
constexpr std::string_view kdeVirtualDesktops =
    "KDE Plasma switches virtual desktops with four-finger swipes left and right.";
// The Overview effect owns both vertical swipes (up: Overview, down: Grid View) and can be
// switched off among the desktop effects.
constexpr std::string_view kdeOverview =
    "KDE Plasma opens the Overview with a four-finger swipe up (System Settings › Desktop Effects).";
constexpr std::string_view kdeGridView =
    "KDE Plasma opens the Grid View with a four-finger swipe down (System Settings › Desktop Effects).";

SettingsPane gnomeMouseAndTouchpad() {
    return {"Mouse & Touchpad", "", {"gnome-control-center", "mouse"}};
}

SettingsPane kdeTouchpad() {
    return {"Touchpad", "", {"systemsettings", "kcm_touchpad"}};
}

SettingsPane kdeDesktopEffects() {
    return {"Desktop Effects", "", {"systemsettings", "kcm_kwin_effects"}};
}

// Tap to click also turns a tap into a click (and, by libinput's tap button map, a three-finger
// tap into a middle or right click). The text says where the desktop keeps the switch.
SystemConflict tapToClickConflict(LinuxDesktop desktop, std::string_view whatElseClicks) {
    const std::string clicks = std::string(", ") + std::string(whatElseClicks) + " also clicks.";
    switch (desktop) {
        case LinuxDesktop::gnome:
            return {"With tap to click on in GNOME (Settings › Mouse & Touchpad)" + clicks,
                    gnomeMouseAndTouchpad()};
        case LinuxDesktop::kde:
            return {"With tap to click on in KDE Plasma (System Settings › Touchpad)" + clicks,
                    kdeTouchpad()};
        case LinuxDesktop::other:
            break;
    }
    return {"With tap to click on" + clicks, std::nullopt};
}

bool hasGnomeThreeFingerSwipes(const DesktopGestureSettings& settings) {
    return settings.desktop == LinuxDesktop::gnome &&
           settings.gnomeShellMajor.value_or(firstGnomeShellWithThreeFingerSwipes) >=
               firstGnomeShellWithThreeFingerSwipes;
}

std::optional<SystemConflict> swipeConflict(const GestureDef& def, const DesktopGestureSettings& settings) {
    if (def.fingers == 3 && hasGnomeThreeFingerSwipes(settings)) {
        return SystemConflict{std::string(isVertical(def.direction) ? gnomeOverview : gnomeWorkspaces),
                              std::nullopt};
    }
    if (def.fingers == 4 && settings.desktop == LinuxDesktop::kde) {
        if (!def.direction) return std::nullopt;  // every plain swipe has one
        switch (*def.direction) {
            case SwipeDirection::up:
                return SystemConflict{std::string(kdeOverview), kdeDesktopEffects()};
            case SwipeDirection::down:
                return SystemConflict{std::string(kdeGridView), kdeDesktopEffects()};
            case SwipeDirection::left:
            case SwipeDirection::right:
                return SystemConflict{std::string(kdeVirtualDesktops), std::nullopt};
        }
    }
    return std::nullopt;
}

std::optional<SystemConflict> conflictOfID(const Gesture& gesture, const DesktopGestureSettings& settings) {
    const std::string_view id = gesture.id;
    if (id.find(".restTap.") != std::string_view::npos && settings.tapToClick) {
        return tapToClickConflict(settings.desktop, "the tapping finger");
    }
    if (auto pointer = pointerMovementConflict(id)) return pointer;

    const auto def = gesture.def();
    if (!def) return std::nullopt;
    if (auto oneFinger = oneFingerConflict(*def)) return oneFinger;
    if (def->motion == Motion::swipe) return swipeConflict(*def, settings);
    if (def->motion == Motion::tap && def->fingers == 3 && settings.tapToClick) {
        return tapToClickConflict(settings.desktop, "a three-finger tap");
    }
    return std::nullopt;
}

}  // namespace

std::optional<SystemConflict> desktopConflict(const Gesture& gesture,
                                              const DesktopGestureSettings& settings) {
    if (!gesture.custom) return conflictOfID(gesture, settings);
    return drawnShapeConflict(gesture.custom->fingers,
                              [&](const Gesture& swipe) { return conflictOfID(swipe, settings); });
}

}  // namespace ostrelle
