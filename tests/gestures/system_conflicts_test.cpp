#include "gestures/system_conflicts.h"

#include <gtest/gtest.h>

#include <map>
#include <vector>

namespace ostrelle {
namespace {

using Stored = std::map<std::string, std::int64_t, std::less<>>;

// Preferences holding exactly the stored keys; everything else reads as not stored.
struct FakeTrackpadPreferences final : TrackpadPreferences {
    std::optional<std::int64_t> integer(std::string_view key) const override {
        reads.emplace_back(key);
        const auto it = stored.find(key);
        return it == stored.end() ? std::nullopt : std::optional(it->second);
    }
    Stored stored;
    mutable std::vector<std::string> reads;
};

// The conflict's text and, in brackets, the pane that removes it; "" for none.
std::string conflictOf(const Gesture& gesture, const Stored& stored) {
    FakeTrackpadPreferences preferences;
    preferences.stored = stored;
    const auto conflict = systemConflict(gesture, preferences);
    if (!conflict) return "";
    return conflict->text + (conflict->settings ? " [" + conflict->settings->name + "]" : "");
}

const std::string missionControl4 = "Four-finger swipes open Mission Control or App Exposé. [Trackpad]";
const std::string fullScreen4 = "Four-finger swipes switch between full-screen apps. [Trackpad]";
const std::string drag3 = "Three-finger drag is turned on (Accessibility › Pointer Control). [Accessibility]";

const Stored everythingOn{{"Clicking", 1},
                          {"TrackpadThreeFingerDrag", 1},
                          {"TrackpadThreeFingerTapGesture", 1},
                          {"TrackpadThreeFingerVertSwipeGesture", 2},
                          {"TrackpadThreeFingerHorizSwipeGesture", 2}};
const Stored threeSwipes{{"TrackpadThreeFingerVertSwipeGesture", 2},
                         {"TrackpadThreeFingerHorizSwipeGesture", 2}};
const Stored threeVerticalOnly{{"TrackpadThreeFingerVertSwipeGesture", 2},
                               {"TrackpadThreeFingerHorizSwipeGesture", 1}};

TEST(SystemConflicts, Rules) {
    const struct {
        std::vector<const char*> ids;
        Stored stored;
        std::string expected;
    } rows[] = {
        // Absent keys: four-finger swipes count as on, three-finger ones as off.
        {{"4.swipe.up", "4.swipe.down"}, {}, missionControl4},
        {{"4.swipe.right"}, {}, fullScreen4},
        {{"3.swipe.up", "3.swipe.left", "3.restTap.between", "3.tap"}, {}, ""},
        // Only the value 2 is the system's swipe, and each axis has its own key.
        {{"4.swipe.down"}, {{"TrackpadFourFingerVertSwipeGesture", 0}}, ""},
        {{"4.swipe.left"}, {{"TrackpadFourFingerVertSwipeGesture", 0}}, fullScreen4},
        {{"4.swipe.right"}, {{"TrackpadFourFingerHorizSwipeGesture", 1}}, ""},
        {{"3.swipe.down"}, threeSwipes, "Three-finger swipes open Mission Control or App Exposé. [Trackpad]"},
        {{"3.swipe.right"}, threeSwipes, "Three-finger swipes switch between full-screen apps. [Trackpad]"},
        {{"3.swipe.left"}, threeVerticalOnly, ""},
        // Three-finger drag takes every three-finger swipe, whatever the swipe keys say.
        {{"3.swipe.up", "3.swipe.right"}, everythingOn, drag3},
        {{"4.swipe.left"}, everythingOn, fullScreen4},
        // Rest taps clash only with tap to click, judged by the id alone, before anything else.
        {{"3.restTap.between", "9.restTap.x", "2.restSwipe.restTap.x"},
         {{"Clicking", 1}},
         "With Tap to click on, the tapping finger also clicks. [Trackpad]"},
        // Pointer notes come from the id and link nowhere: nothing could switch them off.
        {{"2.restSwipe.up.left", "2.restSwipe.restTap.x"}, {}, "The swiping finger also moves the pointer."},
        {{"3.restSwipe.up"}, {}, "Two moving fingers may also scroll."},
        {{"3.restRemove.left"}, {}, "The remaining finger also moves the pointer."},
        // Look Up, and the gestures that never clash.
        {{"3.tap"}, {{"TrackpadThreeFingerTapGesture", 2}}, "Three-finger tap is Look Up. [Trackpad]"},
        {{"4.tap", "3.click", "5.swipe.up", "3.restRemove", "unknown.id"}, everythingOn, ""},
    };
    for (const auto& row : rows) {
        for (const char* id : row.ids) {
            EXPECT_EQ(conflictOf(Gesture(id), row.stored), row.expected)
                << id << " with " << ::testing::PrintToString(row.stored);
        }
    }
}

TEST(SystemConflicts, CustomShapesTakeTheFirstClashingSwipeDirection) {
    auto shapeWith = [](int fingers) { return Gesture::newCustom(CustomShape("zigzag", fingers, {}, {})); };
    EXPECT_EQ(conflictOf(shapeWith(4), {}), missionControl4);  // up is tried first
    EXPECT_EQ(conflictOf(shapeWith(4), {{"TrackpadFourFingerVertSwipeGesture", 0}}), fullScreen4);
    EXPECT_EQ(conflictOf(shapeWith(3), everythingOn), drag3);
    // The catalog has no one-finger swipes, so a one-finger shape finds nothing to clash with.
    EXPECT_EQ(conflictOf(shapeWith(1), {}), "");
}

TEST(SystemConflicts, ReadsOnlyWhatItNeedsAndAfreshEachTime) {
    FakeTrackpadPreferences none;
    systemConflict(Gesture("2.restSwipe.up.left"), none);
    EXPECT_TRUE(none.reads.empty());
    systemConflict(Gesture("4.swipe.up"), none);
    systemConflict(Gesture("4.swipe.up"), none);
    EXPECT_EQ(none.reads, (std::vector<std::string>(2, "TrackpadFourFingerVertSwipeGesture")));
}

}  // namespace
}  // namespace ostrelle
