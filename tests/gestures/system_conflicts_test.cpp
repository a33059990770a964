#include "gestures/system_conflicts.h"

#include <gtest/gtest.h>

#include <map>
#include <vector>

namespace ostrelle {
namespace {

using Stored = std::map<std::string, std::int64_t, std::less<>>;

// Preferences holding exactly the given keys; everything else reads as not stored.
class FakeTrackpadPreferences final : public TrackpadPreferences {
  public:
    explicit FakeTrackpadPreferences(Stored values = {}) : values_(std::move(values)) {}

    std::optional<std::int64_t> integer(std::string_view key) const override {
        reads.emplace_back(key);
        const auto it = values_.find(key);
        return it == values_.end() ? std::nullopt : std::optional(it->second);
    }

    mutable std::vector<std::string> reads;

  private:
    Stored values_;
};

enum class Pane { none, trackpad, accessibility };

struct ConflictCase {
    const char* name;
    const char* id;
    Stored stored;
    const char* text;  // null: no conflict
    Pane pane = Pane::none;

    friend void PrintTo(const ConflictCase& row, std::ostream* out) { *out << row.name; }
};

const char* const missionControl4 = "Four-finger swipes open Mission Control or App Exposé.";
const char* const fullScreen4 = "Four-finger swipes switch between full-screen apps.";
const char* const missionControl3 = "Three-finger swipes open Mission Control or App Exposé.";
const char* const fullScreen3 = "Three-finger swipes switch between full-screen apps.";
const char* const drag3 = "Three-finger drag is turned on (Accessibility › Pointer Control).";
const char* const tapClicks = "With Tap to click on, the tapping finger also clicks.";
const char* const swipingFinger = "The swiping finger also moves the pointer.";

const Stored everythingOn{{"Clicking", 1},
                          {"TrackpadThreeFingerDrag", 1},
                          {"TrackpadThreeFingerTapGesture", 1},
                          {"TrackpadThreeFingerVertSwipeGesture", 2},
                          {"TrackpadThreeFingerHorizSwipeGesture", 2}};
const Stored threeFingerSwipes{{"TrackpadThreeFingerVertSwipeGesture", 2},
                               {"TrackpadThreeFingerHorizSwipeGesture", 2}};

class SystemConflictRules : public ::testing::TestWithParam<ConflictCase> {};

TEST_P(SystemConflictRules, GiveTheExpectedTextAndPane) {
    const ConflictCase& row = GetParam();
    const auto conflict = systemConflict(Gesture(row.id), FakeTrackpadPreferences(row.stored));
    if (row.text == nullptr) {
        EXPECT_EQ(conflict, std::nullopt);
        return;
    }
    ASSERT_TRUE(conflict.has_value());
    EXPECT_EQ(conflict->text, row.text);
    switch (row.pane) {
        case Pane::none:
            EXPECT_EQ(conflict->settings, std::nullopt);
            break;
        case Pane::trackpad:
            EXPECT_EQ(conflict->settings, SettingsPane::trackpad());
            break;
        case Pane::accessibility:
            EXPECT_EQ(conflict->settings, SettingsPane::accessibility());
            break;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Rows, SystemConflictRules,
    ::testing::Values(
        // Absent keys: four-finger swipes count as on, three-finger ones as off.
        ConflictCase{"fourUpByDefault", "4.swipe.up", {}, missionControl4, Pane::trackpad},
        ConflictCase{"fourDownByDefault", "4.swipe.down", {}, missionControl4, Pane::trackpad},
        ConflictCase{"fourLeftByDefault", "4.swipe.left", {}, fullScreen4, Pane::trackpad},
        ConflictCase{"fourRightByDefault", "4.swipe.right", {}, fullScreen4, Pane::trackpad},
        ConflictCase{"threeUpByDefault", "3.swipe.up", {}, nullptr},
        ConflictCase{"threeLeftByDefault", "3.swipe.left", {}, nullptr},
        ConflictCase{"fiveFingerSwipe", "5.swipe.up", everythingOn, nullptr},
        // Only the value 2 is the system's swipe, and each axis has its own key.
        ConflictCase{"fourVerticalOff", "4.swipe.up", {{"TrackpadFourFingerVertSwipeGesture", 0}}, nullptr},
        ConflictCase{"fourVerticalOffLeavesHorizontal",
                     "4.swipe.left",
                     {{"TrackpadFourFingerVertSwipeGesture", 0}},
                     fullScreen4,
                     Pane::trackpad},
        ConflictCase{
            "fourHorizontalOther", "4.swipe.right", {{"TrackpadFourFingerHorizSwipeGesture", 1}}, nullptr},
        ConflictCase{"threeUpSet", "3.swipe.down", threeFingerSwipes, missionControl3, Pane::trackpad},
        ConflictCase{"threeRightSet", "3.swipe.right", threeFingerSwipes, fullScreen3, Pane::trackpad},
        ConflictCase{
            "threeHorizontalOther",
            "3.swipe.left",
            {{"TrackpadThreeFingerVertSwipeGesture", 2}, {"TrackpadThreeFingerHorizSwipeGesture", 1}},
            nullptr},
        // Three-finger drag takes every three-finger swipe, whatever the swipe keys say.
        ConflictCase{"dragUp", "3.swipe.up", everythingOn, drag3, Pane::accessibility},
        ConflictCase{"dragRight", "3.swipe.right", everythingOn, drag3, Pane::accessibility},
        ConflictCase{"dragLeavesFour", "4.swipe.left", everythingOn, fullScreen4, Pane::trackpad},
        // Rest taps clash only with tap to click, judged by the id alone.
        ConflictCase{"restTapClickingOff", "3.restTap.between", {}, nullptr},
        ConflictCase{"restTapClickingOn", "3.restTap.between", {{"Clicking", 1}}, tapClicks, Pane::trackpad},
        ConflictCase{"twoRestTapClickingOn", "2.restTap.right", {{"Clicking", 1}}, tapClicks, Pane::trackpad},
        ConflictCase{"unknownRestTap", "9.restTap.x", {{"Clicking", 1}}, tapClicks, Pane::trackpad},
        ConflictCase{
            "tapToClickFirst", "2.restSwipe.restTap.x", {{"Clicking", 1}}, tapClicks, Pane::trackpad},
        // Pointer notes come from the id and link nowhere: nothing could switch them off.
        ConflictCase{"restSwipeTwo", "2.restSwipe.up.left", {}, swipingFinger},
        ConflictCase{"restSwipeTwoWithRestTap", "2.restSwipe.restTap.x", {}, swipingFinger},
        ConflictCase{"restSwipeThree", "3.restSwipe.up", {}, "Two moving fingers may also scroll."},
        ConflictCase{
            "restRemoveLeft", "3.restRemove.left", {}, "The remaining finger also moves the pointer."},
        ConflictCase{"plainRestRemove", "3.restRemove", everythingOn, nullptr},
        // Look Up, and the gestures that never clash.
        ConflictCase{"threeTapLookUpOff", "3.tap", {}, nullptr},
        ConflictCase{"threeTapLookUpOn",
                     "3.tap",
                     {{"TrackpadThreeFingerTapGesture", 2}},
                     "Three-finger tap is Look Up.",
                     Pane::trackpad},
        ConflictCase{"fourTapLookUpOn", "4.tap", everythingOn, nullptr},
        ConflictCase{"threeClick", "3.click", everythingOn, nullptr},
        ConflictCase{"fourDoubleTap", "4.doubleTap", everythingOn, nullptr},
        ConflictCase{"unknownID", "unknown.id", everythingOn, nullptr}),
    [](const ::testing::TestParamInfo<ConflictCase>& row) { return std::string(row.param.name); });

Gesture shapeWith(int fingers) {
    CustomShape shape;
    shape.name = "zigzag";
    shape.fingers = fingers;
    return Gesture::newCustom(shape);
}

TEST(SystemConflicts, CustomShapesTakeTheFirstClashingSwipeDirection) {
    const FakeTrackpadPreferences none;
    EXPECT_EQ(systemConflict(shapeWith(4), none)->text, missionControl4);  // up is tried first
    const FakeTrackpadPreferences verticalOff({{"TrackpadFourFingerVertSwipeGesture", 0}});
    EXPECT_EQ(systemConflict(shapeWith(4), verticalOff)->text, fullScreen4);
    EXPECT_EQ(systemConflict(shapeWith(3), none), std::nullopt);
    EXPECT_EQ(systemConflict(shapeWith(3), FakeTrackpadPreferences(everythingOn))->text, drag3);
    EXPECT_EQ(systemConflict(shapeWith(5), none), std::nullopt);
    // The catalog has no one-finger swipes, so a one-finger shape finds nothing to clash with.
    EXPECT_EQ(systemConflict(shapeWith(1), none), std::nullopt);
}

TEST(SystemConflicts, ReadsOnlyWhatItNeedsAndAfreshEachTime) {
    const FakeTrackpadPreferences none;
    systemConflict(Gesture("2.restSwipe.up.left"), none);
    EXPECT_TRUE(none.reads.empty());
    systemConflict(Gesture("4.swipe.up"), none);
    systemConflict(Gesture("4.swipe.up"), none);
    EXPECT_EQ(none.reads, (std::vector<std::string>(2, "TrackpadFourFingerVertSwipeGesture")));
}

TEST(SystemConflicts, PanesOpenTheSystemSettings) {
    EXPECT_EQ(SettingsPane::trackpad(),
              (SettingsPane{"Trackpad", "x-apple.systempreferences:com.apple.preference.trackpad"}));
    EXPECT_EQ(
        SettingsPane::accessibility(),
        (SettingsPane{"Accessibility", "x-apple.systempreferences:com.apple.preference.universalaccess"}));
}

}  // namespace
}  // namespace ostrelle
