#include "gestures/desktop_conflicts.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace ostrelle {
namespace {

// The conflict's text and, in brackets, the page and the command that opens it; "" for none.
std::string conflictOf(const Gesture& gesture, const DesktopGestureSettings& settings) {
    const auto conflict = desktopConflict(gesture, settings);
    if (!conflict) return "";
    if (!conflict->settings) return conflict->text;
    std::string command;
    for (const std::string& word : conflict->settings->command)
        command += (command.empty() ? "" : " ") + word;
    EXPECT_EQ(conflict->settings->url, "") << "a Linux page is opened by its command";
    return conflict->text + " [" + conflict->settings->name + ": " + command + "]";
}

const DesktopGestureSettings gnome{LinuxDesktop::gnome, false, 40};  // the first with its own swipes
const DesktopGestureSettings gnomeTapping{LinuxDesktop::gnome, true, std::nullopt};
const DesktopGestureSettings gnome338{LinuxDesktop::gnome, true, 3};
const DesktopGestureSettings kde{LinuxDesktop::kde, false, std::nullopt};
const DesktopGestureSettings kdeTapping{LinuxDesktop::kde, true, std::nullopt};
const DesktopGestureSettings otherTapping{LinuxDesktop::other, true, std::nullopt};

const std::string gnomeWorkspaces =
    "GNOME switches workspaces with three-finger swipes left and right; no setting turns this off.";
const std::string gnomeOverview =
    "GNOME opens the overview and app grid with three-finger swipes up and down; no setting turns this off.";
const std::string kdeOverview =
    "KDE Plasma opens the Overview with a four-finger swipe up (System Settings › Desktop Effects). "
    "[Desktop Effects: systemsettings kcm_kwin_effects]";
const std::string kdeDesktops =
    "KDE Plasma switches virtual desktops with four-finger swipes left and right.";
const std::string gnomeTap =
    "With tap to click on in GNOME (Settings › Mouse & Touchpad), the tapping finger also clicks. "
    "[Mouse & Touchpad: gnome-control-center mouse]";

TEST(DesktopConflicts, Rules) {
    const struct {
        const char* name;
        std::vector<const char*> ids;
        DesktopGestureSettings settings;
        std::string expected;
    } rows[] = {
        {"GNOME 40 and later take three-finger swipes",
         {"3.swipe.left", "3.swipe.right"},
         gnome,
         gnomeWorkspaces},
        {"vertical ones too, whatever tap to click",
         {"3.swipe.up", "3.swipe.down"},
         gnomeTapping,
         gnomeOverview},
        {"GNOME 3.38 swiped with four fingers", {"3.swipe.up", "3.swipe.left", "4.swipe.up"}, gnome338, ""},
        {"GNOME leaves four and five fingers free", {"4.swipe.left", "5.swipe.up", "4.tap"}, gnome, ""},
        {"KDE Plasma: four-finger up is the Overview", {"4.swipe.up"}, kde, kdeOverview},
        {"down the Grid View",
         {"4.swipe.down"},
         kdeTapping,
         "KDE Plasma opens the Grid View with a four-finger swipe down (System Settings › Desktop Effects). "
         "[Desktop Effects: systemsettings kcm_kwin_effects]"},
        {"left and right the virtual desktops", {"4.swipe.left", "4.swipe.right"}, kde, kdeDesktops},
        {"KDE Plasma leaves three fingers free", {"3.swipe.up", "3.swipe.left", "5.swipe.down"}, kde, ""},
        {"GNOME's tap to click",
         {"3.restTap.between", "2.restTap.left", "2.restSwipe.restTap.x"},
         gnomeTapping,
         gnomeTap},
        {"KDE Plasma's tap to click",
         {"3.restTap.left"},
         kdeTapping,
         "With tap to click on in KDE Plasma (System Settings › Touchpad), the tapping finger also clicks. "
         "[Touchpad: systemsettings kcm_touchpad]"},
        {"another desktop's tap to click names no page",
         {"3.restTap.right"},
         otherTapping,
         "With tap to click on, the tapping finger also clicks."},
        {"a three-finger tap is a click with tap to click",
         {"3.tap"},
         gnome338,
         "With tap to click on in GNOME (Settings › Mouse & Touchpad), a three-finger tap also clicks. "
         "[Mouse & Touchpad: gnome-control-center mouse]"},
        {"taps clash only with tap to click",
         {"3.restTap.between", "3.tap", "5.doubleTap", "3.click"},
         kde,
         ""},
        {"and a tap of more fingers never", {"4.tap", "5.tap"}, kdeTapping, ""},
        {"pointer notes hold on every desktop",
         {"2.restSwipe.up.left"},
         otherTapping,
         "The swiping finger also moves the pointer."},
        {"nothing on other desktops but taps and pointer notes",
         {"3.swipe.up", "4.swipe.up", "3.restRemove", "unknown.id"},
         otherTapping,
         ""},
    };
    for (const auto& row : rows) {
        for (const char* id : row.ids) {
            EXPECT_EQ(conflictOf(Gesture(id), row.settings), row.expected) << row.name << ": " << id;
        }
    }
}

TEST(DesktopConflicts, CustomShapesTakeTheFirstClashingSwipeDirection) {
    auto shapeWith = [](int fingers) { return Gesture::newCustom(CustomShape("zigzag", fingers, {}, {})); };
    EXPECT_EQ(conflictOf(shapeWith(3), gnome), gnomeOverview);  // up is tried first
    EXPECT_EQ(conflictOf(shapeWith(4), kde), kdeOverview);
    EXPECT_EQ(conflictOf(shapeWith(3), kde), "");
    EXPECT_EQ(conflictOf(shapeWith(4), gnome338), "");
    // A drawn shape is no tap: tap to click leaves it alone.
    EXPECT_EQ(conflictOf(shapeWith(3), otherTapping), "");
}

}  // namespace
}  // namespace ostrelle
