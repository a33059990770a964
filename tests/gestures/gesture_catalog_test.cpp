// The built-in gesture catalog: which gestures it offers, their order, and what a gesture reads from it.
#include "gestures/gesture_catalog.h"

#include <gtest/gtest.h>

#include <limits>

namespace ostrelle {
namespace {

// Three-finger rest swipes and the "lift all but one" family are known but not offered.
bool offered(const std::string& id) {
    return !id.starts_with("3.restSwipe.") && !id.starts_with("3.restRemove");
}

TEST(GestureCatalog, OffersEveryKnownGestureButTheHeldBackFamiliesInCatalogOrder) {
    std::vector<std::string> expected;
    std::int64_t position = 0;
    for (const GestureGroup& group : GestureCatalog::allGroups()) {
        for (const GestureDef& def : group.gestures) {
            const Gesture gesture(def.id);
            EXPECT_EQ(GestureCatalog::isEnabled(gesture), offered(def.id)) << def.id;
            if (offered(def.id)) expected.push_back(def.id);
            EXPECT_EQ(def.fingers, group.fingers) << def.id;
            EXPECT_EQ(def.dots.size(), static_cast<std::size_t>(def.fingers)) << def.id;
            // A gesture reads its name, hint and finger count from here and sorts by its place.
            EXPECT_EQ(gesture.displayName(), def.name);
            EXPECT_EQ(gesture.hint(), def.hint);
            EXPECT_EQ(gesture.fingers(), def.fingers);
            EXPECT_EQ(gesture.sortKey(), position++) << def.id;
        }
    }
    std::vector<std::string> all;
    for (const Gesture& gesture : GestureCatalog::all()) all.push_back(gesture.id);
    EXPECT_EQ(all, expected);
    for (const std::string& id : GestureCatalog::enabled())
        EXPECT_NE(GestureCatalog::find(id), nullptr) << id;
}

TEST(GestureCatalog, UnknownIdsSortLastWithoutNameOrHint) {
    const Gesture unknown("7.wiggle");
    EXPECT_EQ(unknown.displayName(), "Unknown gesture");
    EXPECT_EQ(unknown.fingers(), 0);
    EXPECT_EQ(unknown.hint(), "");
    EXPECT_EQ(unknown.sortKey(), std::numeric_limits<std::int64_t>::max());
}

}  // namespace
}  // namespace ostrelle
