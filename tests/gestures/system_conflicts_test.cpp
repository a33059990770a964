#include "gestures/system_conflicts.h"

#include <gtest/gtest.h>

#include <map>
#include <vector>

namespace ostrelle {
namespace {

// Preferences holding exactly the given keys; everything else reads as not stored.
class FakeTrackpadPreferences final : public TrackpadPreferences {
  public:
    FakeTrackpadPreferences() = default;
    FakeTrackpadPreferences(std::initializer_list<std::pair<const std::string, std::int64_t>> values)
        : values_(values) {}

    std::optional<std::int64_t> integer(std::string_view key) const override {
        reads.emplace_back(key);
        const auto it = values_.find(key);
        if (it == values_.end()) return std::nullopt;
        return it->second;
    }

    mutable std::vector<std::string> reads;

  private:
    std::map<std::string, std::int64_t, std::less<>> values_;
};

const std::string missionControl = "Four-finger swipes open Mission Control or App Exposé.";
const std::string fullScreenApps = "Four-finger swipes switch between full-screen apps.";
const std::string threeMissionControl = "Three-finger swipes open Mission Control or App Exposé.";
const std::string threeFullScreenApps = "Three-finger swipes switch between full-screen apps.";
const std::string threeFingerDrag = "Three-finger drag is turned on (Accessibility › Pointer Control).";
const std::string tapClicks = "With Tap to click on, the tapping finger also clicks.";
const std::string lookUp = "Three-finger tap is Look Up.";

std::optional<std::string> textFor(const std::string& id, const TrackpadPreferences& preferences) {
    const auto conflict = systemConflict(Gesture(id), preferences);
    if (!conflict) return std::nullopt;
    return conflict->text;
}

CustomShape shapeWith(int fingers) {
    CustomShape shape;
    shape.name = "zigzag";
    shape.fingers = fingers;
    return shape;
}

TEST(SystemConflicts, DefaultsCountFourFingerSwipesAsOnAndThreeFingerOnesAsOff) {
    const FakeTrackpadPreferences none;
    EXPECT_EQ(textFor("4.swipe.up", none), missionControl);
    EXPECT_EQ(textFor("4.swipe.down", none), missionControl);
    EXPECT_EQ(textFor("4.swipe.left", none), fullScreenApps);
    EXPECT_EQ(textFor("4.swipe.right", none), fullScreenApps);
    for (const char* id : {"3.swipe.up", "3.swipe.down", "3.swipe.left", "3.swipe.right", "5.swipe.up"}) {
        EXPECT_EQ(textFor(id, none), std::nullopt) << id;
    }
}

TEST(SystemConflicts, FourFingerSwipesFollowTheirOwnAxisKey) {
    const FakeTrackpadPreferences verticalOff{{"TrackpadFourFingerVertSwipeGesture", 0}};
    EXPECT_EQ(textFor("4.swipe.up", verticalOff), std::nullopt);
    EXPECT_EQ(textFor("4.swipe.left", verticalOff), fullScreenApps);

    // Only the value 2 means the system's swipe; 1 is some other use of the fingers.
    const FakeTrackpadPreferences horizontalOther{{"TrackpadFourFingerHorizSwipeGesture", 1}};
    EXPECT_EQ(textFor("4.swipe.right", horizontalOther), std::nullopt);
    EXPECT_EQ(textFor("4.swipe.down", horizontalOther), missionControl);
}

TEST(SystemConflicts, ThreeFingerSwipesFollowTheirAxisKeysWhenSetToTwo) {
    const FakeTrackpadPreferences both{{"TrackpadThreeFingerVertSwipeGesture", 2},
                                       {"TrackpadThreeFingerHorizSwipeGesture", 2}};
    EXPECT_EQ(textFor("3.swipe.up", both), threeMissionControl);
    EXPECT_EQ(textFor("3.swipe.down", both), threeMissionControl);
    EXPECT_EQ(textFor("3.swipe.left", both), threeFullScreenApps);
    EXPECT_EQ(textFor("3.swipe.right", both), threeFullScreenApps);

    const FakeTrackpadPreferences verticalOnly{{"TrackpadThreeFingerVertSwipeGesture", 2},
                                               {"TrackpadThreeFingerHorizSwipeGesture", 1}};
    EXPECT_EQ(textFor("3.swipe.left", verticalOnly), std::nullopt);
}

TEST(SystemConflicts, ThreeFingerDragTakesEveryThreeFingerSwipe) {
    const FakeTrackpadPreferences drag{{"TrackpadThreeFingerDrag", 1},
                                       {"TrackpadThreeFingerVertSwipeGesture", 2},
                                       {"TrackpadThreeFingerHorizSwipeGesture", 2}};
    for (const char* id : {"3.swipe.up", "3.swipe.down", "3.swipe.left", "3.swipe.right"}) {
        const auto conflict = systemConflict(Gesture(id), drag);
        ASSERT_TRUE(conflict.has_value()) << id;
        EXPECT_EQ(conflict->text, threeFingerDrag);
        EXPECT_EQ(conflict->settings, SettingsPane::accessibility());
    }
    EXPECT_EQ(textFor("4.swipe.up", drag), missionControl);
    EXPECT_EQ(textFor("3.tap", drag), std::nullopt);
}

TEST(SystemConflicts, RestTapsClashOnlyWithTapToClick) {
    const FakeTrackpadPreferences off;
    const FakeTrackpadPreferences on{{"Clicking", 1}};
    for (const char* id : {"3.restTap.between", "3.restTap.left", "2.restTap.right"}) {
        EXPECT_EQ(textFor(id, off), std::nullopt) << id;
        EXPECT_EQ(textFor(id, on), tapClicks) << id;
    }
    // The id alone decides, known to the catalog or not.
    EXPECT_EQ(textFor("9.restTap.anything", on), tapClicks);
}

TEST(SystemConflicts, ThreeFingerTapIsLookUpOnlyWhenSet) {
    EXPECT_EQ(textFor("3.tap", FakeTrackpadPreferences{}), std::nullopt);
    EXPECT_EQ(textFor("3.tap", FakeTrackpadPreferences{{"TrackpadThreeFingerTapGesture", 2}}), lookUp);
    EXPECT_EQ(textFor("4.tap", FakeTrackpadPreferences{{"TrackpadThreeFingerTapGesture", 2}}), std::nullopt);
}

TEST(SystemConflicts, ClicksAndOtherGesturesNeverClash) {
    const FakeTrackpadPreferences everythingOn{{"Clicking", 1},
                                               {"TrackpadThreeFingerDrag", 1},
                                               {"TrackpadThreeFingerTapGesture", 1},
                                               {"TrackpadThreeFingerVertSwipeGesture", 2},
                                               {"TrackpadThreeFingerHorizSwipeGesture", 2}};
    for (const char* id : {"3.click", "4.click", "5.click", "4.doubleTap", "4.tap", "5.tap", "3.restRemove",
                           "unknown.id", ""}) {
        EXPECT_EQ(textFor(id, everythingOn), std::nullopt) << id;
    }
}

TEST(SystemConflicts, PointerNotesComeFromTheIdAndLinkNowhere) {
    const FakeTrackpadPreferences none;
    const std::vector<std::pair<std::string, std::string>> cases{
        {"2.restSwipe.up.left", "The swiping finger also moves the pointer."},
        {"2.restSwipe.down.right", "The swiping finger also moves the pointer."},
        {"3.restSwipe.up", "Two moving fingers may also scroll."},
        {"3.restRemove.left", "The remaining finger also moves the pointer."},
        {"3.restRemove.up", "The remaining finger also moves the pointer."},
    };
    for (const auto& [id, text] : cases) {
        const auto conflict = systemConflict(Gesture(id), none);
        ASSERT_TRUE(conflict.has_value()) << id;
        EXPECT_EQ(conflict->text, text);
        EXPECT_EQ(conflict->settings, std::nullopt) << id;
    }
    // Reading preferences is not needed for these.
    EXPECT_TRUE(none.reads.empty());
}

TEST(SystemConflicts, TapToClickComesBeforeThePointerNotes) {
    // An id matching both rules: the first rule wins.
    const FakeTrackpadPreferences on{{"Clicking", 1}};
    EXPECT_EQ(textFor("2.restSwipe.restTap.x", on), tapClicks);
    EXPECT_EQ(textFor("2.restSwipe.restTap.x", FakeTrackpadPreferences{}),
              "The swiping finger also moves the pointer.");
}

TEST(SystemConflicts, TrackpadClashesLinkTheTrackpadPane) {
    const FakeTrackpadPreferences all{{"Clicking", 1}, {"TrackpadThreeFingerTapGesture", 1}};
    for (const char* id : {"4.swipe.up", "4.swipe.left", "3.restTap.between", "3.tap"}) {
        const auto conflict = systemConflict(Gesture(id), all);
        ASSERT_TRUE(conflict.has_value()) << id;
        EXPECT_EQ(conflict->settings, SettingsPane::trackpad()) << id;
    }
    EXPECT_EQ(SettingsPane::trackpad().name, "Trackpad");
    EXPECT_EQ(SettingsPane::trackpad().url, "x-apple.systempreferences:com.apple.preference.trackpad");
    EXPECT_EQ(SettingsPane::accessibility().name, "Accessibility");
    EXPECT_EQ(SettingsPane::accessibility().url,
              "x-apple.systempreferences:com.apple.preference.universalaccess");
}

TEST(SystemConflicts, CustomShapesTakeTheFirstClashingSwipeDirection) {
    const FakeTrackpadPreferences none;
    const auto four = systemConflict(Gesture::newCustom(shapeWith(4)), none);
    ASSERT_TRUE(four.has_value());
    EXPECT_EQ(four->text, missionControl);

    // With vertical swipes off, left is the first direction that clashes.
    const FakeTrackpadPreferences verticalOff{{"TrackpadFourFingerVertSwipeGesture", 0}};
    EXPECT_EQ(systemConflict(Gesture::newCustom(shapeWith(4)), verticalOff)->text, fullScreenApps);

    EXPECT_EQ(systemConflict(Gesture::newCustom(shapeWith(3)), none), std::nullopt);
    EXPECT_EQ(systemConflict(Gesture::newCustom(shapeWith(3)),
                             FakeTrackpadPreferences{{"TrackpadThreeFingerDrag", 1}})
                  ->text,
              threeFingerDrag);
    EXPECT_EQ(systemConflict(Gesture::newCustom(shapeWith(5)), none), std::nullopt);
    // The catalog has no one-finger swipes, so a one-finger shape finds nothing to clash with.
    EXPECT_EQ(systemConflict(Gesture::newCustom(shapeWith(1)), none), std::nullopt);
}

TEST(SystemConflicts, ReadsThePreferencesAfreshEachTime) {
    const FakeTrackpadPreferences none;
    systemConflict(Gesture("4.swipe.up"), none);
    systemConflict(Gesture("4.swipe.up"), none);
    EXPECT_EQ(none.reads, (std::vector<std::string>{"TrackpadFourFingerVertSwipeGesture",
                                                    "TrackpadFourFingerVertSwipeGesture"}));
}

}  // namespace
}  // namespace ostrelle
