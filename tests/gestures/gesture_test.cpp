// Gesture identity: drawn shapes' ids, names and hints, finger labels, equality and hashing.
#include "gestures/gesture.h"

#include <gtest/gtest.h>

#include <limits>

#include "gestures/gesture_catalog.h"
#include "support/uuid.h"

namespace ostrelle {
namespace {

Gesture drawn(const std::string& name, int fingers = 3) {
    return Gesture::newCustom(
        CustomShape(name, fingers, std::vector<Point>(CustomShape::templatePoints), {{{0, 0}}}));
}

TEST(CustomGestures, FreshIdsNamesAndHints) {
    const Gesture four = drawn("Zig", 4);
    EXPECT_NE(four.id, drawn("Zig", 4).id);
    EXPECT_TRUE(four.id.starts_with("4.custom.") && isCanonicalUUID(four.id.substr(9))) << four.id;
    // Named by the user, trimmed of spaces and tabs only.
    EXPECT_EQ(drawn(" Zig ").displayName(), "Zig");
    EXPECT_EQ(drawn("\tZig\t").displayName(), "Zig");
    EXPECT_EQ(drawn("  ").displayName(), "Custom gesture");
    EXPECT_EQ(drawn("Zig\n").displayName(), "Zig\n");
    // The hint keeps its plural even for one finger.
    EXPECT_EQ(four.hint(), "Draw this shape with four fingers, any size, anywhere on the trackpad.");
    EXPECT_EQ(drawn("a", 1).hint(), "Draw this shape with one fingers, any size, anywhere on the trackpad.");
    // Always offered, after every built-in gesture.
    EXPECT_TRUE(GestureCatalog::isEnabled(four));
    EXPECT_EQ(four.sortKey(), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(Gesture::fingersLabel(1), "1 finger");
    EXPECT_EQ(Gesture::fingersLabel(5), "5 fingers");
}

TEST(GestureEquality, TheShapeTakesPartInEqualityAndHashing) {
    const Gesture shaped = drawn("Zig");
    Gesture renamed = shaped;
    renamed.custom->name = "Zag";
    EXPECT_NE(shaped, renamed);
    EXPECT_EQ(std::hash<Gesture>{}(shaped), std::hash<Gesture>{}(Gesture(shaped)));
    EXPECT_NE(std::hash<Gesture>{}(shaped), std::hash<Gesture>{}(renamed));
}

}  // namespace
}  // namespace ostrelle
