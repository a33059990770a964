// Gesture identity: ids, names, hints, finger counts, sort keys, equality and hashing.
#include <gtest/gtest.h>

#include <limits>
#include <unordered_set>

#include "gestures/gesture.h"
#include "gestures/gesture_catalog.h"

namespace ostrelle {
namespace {

CustomShape shapeNamed(const std::string& name, int fingers = 3) {
    return CustomShape(name, fingers, std::vector<Point>(CustomShape::templatePoints), {{{0, 0}}});
}

TEST(GestureIDs, GenericIDsComposeFingersMotionAndDirection) {
    EXPECT_EQ(Gesture::genericID(3, Motion::swipe, SwipeDirection::left), "3.swipe.left");
    EXPECT_EQ(Gesture::genericID(2, Motion::doubleTap, std::nullopt), "2.doubleTap");
    EXPECT_EQ(Gesture::genericID(3, Motion::tap, SwipeDirection::up), "3.tap.up");  // composed, not validated
}

TEST(GestureIDs, NewCustomIdsAreFreshCanonicalUUIDs) {
    const CustomShape shape = shapeNamed("Zig", 4);
    const Gesture a = Gesture::newCustom(shape);
    const Gesture b = Gesture::newCustom(shape);
    EXPECT_NE(a.id, b.id);
    EXPECT_NE(a, b);
    ASSERT_EQ(a.id.size(), std::string("4.custom.").size() + 36);
    EXPECT_EQ(a.id.rfind("4.custom.", 0), 0U);
    for (char c : a.id.substr(9)) EXPECT_TRUE(c == '-' || std::isdigit(c) || (c >= 'A' && c <= 'F')) << a.id;
}

TEST(GestureNames, CatalogGesturesUseTheirDefinition) {
    const Gesture hold("3.restRemove");
    EXPECT_EQ(hold.displayName(), "Hold three, lift all but one");
    EXPECT_EQ(hold.fingers(), 3);
    EXPECT_EQ(hold.hint(), "Rest three fingers still, then lift all but one.");
    EXPECT_FALSE(GestureCatalog::isEnabled(hold));
}

TEST(GestureNames, UnknownIdsFallBack) {
    const Gesture unknown("7.wiggle");
    EXPECT_FALSE(unknown.def().has_value());
    EXPECT_EQ(unknown.displayName(), "Unknown gesture");
    EXPECT_EQ(unknown.fingers(), 0);
    EXPECT_EQ(unknown.hint(), "");
    EXPECT_EQ(unknown.sortKey(), std::numeric_limits<std::int64_t>::max());
}

TEST(GestureNames, CustomShapesAreNamedByTheUserTrimmedOfSpacesAndTabs) {
    EXPECT_EQ(Gesture::newCustom(shapeNamed(" Zig ")).displayName(), "Zig");
    EXPECT_EQ(Gesture::newCustom(shapeNamed("\tZig\t")).displayName(), "Zig");
    EXPECT_EQ(Gesture::newCustom(shapeNamed("  ")).displayName(), "Custom gesture");
    EXPECT_EQ(Gesture::newCustom(shapeNamed("Zig\n")).displayName(), "Zig\n");
}

TEST(GestureNames, CustomHintKeepsThePluralEvenForOneFinger) {
    EXPECT_EQ(Gesture::newCustom(shapeNamed("a", 1)).hint(),
              "Draw this shape with one fingers, any size, anywhere on the trackpad.");
    const Gesture four = Gesture::newCustom(shapeNamed("a", 4));
    EXPECT_EQ(four.hint(), "Draw this shape with four fingers, any size, anywhere on the trackpad.");
    EXPECT_EQ(four.fingers(), 4);
    EXPECT_TRUE(four.def()->dots.empty());
    EXPECT_FALSE(four.def()->motion.has_value());
    EXPECT_EQ(four.sortKey(), std::numeric_limits<std::int64_t>::max());
    EXPECT_TRUE(GestureCatalog::isEnabled(four));
}

TEST(GestureNames, FingersLabel) {
    EXPECT_EQ(Gesture::fingersLabel(1), "1 finger");
    EXPECT_EQ(Gesture::fingersLabel(0), "0 fingers");
    EXPECT_EQ(Gesture::fingersLabel(5), "5 fingers");
}

TEST(GestureNamesDeathTest, NumberWordOutsideOneToFiveStops) {
    // The log's writer thread may be running; re-executing the test binary is safe with threads.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EQ(Gesture::word(1), "One");
    EXPECT_EQ(Gesture::word(5), "Five");
    EXPECT_DEATH(Gesture::word(6), "finger count");
    EXPECT_DEATH(Gesture::word(0), "finger count");
}

TEST(GestureEquality, TheShapeTakesPartInEqualityAndHashing) {
    Gesture plain("3.custom.X");
    Gesture drawn("3.custom.X");
    drawn.custom = shapeNamed("Zig");
    Gesture renamed = drawn;
    renamed.custom->name = "Zag";
    EXPECT_NE(plain, drawn);
    EXPECT_NE(drawn, renamed);
    EXPECT_EQ(drawn, Gesture(drawn));
    const std::unordered_set<Gesture> set{plain, drawn, renamed, Gesture(drawn)};
    EXPECT_EQ(set.size(), 3U);
}

TEST(Motions, RawValuesAndLabels) {
    EXPECT_EQ(rawValue(Motion::doubleTap), "doubleTap");
    EXPECT_EQ(label(Motion::doubleTap), "Double tap");
    EXPECT_EQ(motionFromRaw("click"), Motion::click);
    EXPECT_EQ(motionFromRaw("Click"), std::nullopt);
    EXPECT_EQ(swipeDirectionFromRaw("left"), SwipeDirection::left);
    EXPECT_EQ(swipeDirectionFromRaw("diagonal"), std::nullopt);
}

TEST(Motions, DirectionOfADisplacement) {
    EXPECT_EQ(directionOf(0.2, 0.1), SwipeDirection::right);
    EXPECT_EQ(directionOf(-0.2, 0.1), SwipeDirection::left);
    EXPECT_EQ(directionOf(0.1, 0.1), SwipeDirection::down);  // an exact diagonal is vertical
    EXPECT_EQ(directionOf(-0.1, -0.1), SwipeDirection::up);
    EXPECT_EQ(directionOf(0, 0), SwipeDirection::up);
}

}  // namespace
}  // namespace ostrelle
