// The built-in gesture catalog: which gestures it offers, and in what order.
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
    std::int64_t position = 0;
    for (const GestureGroup& group : GestureCatalog::allGroups()) {
        for (const GestureDef& def : group.gestures) {
            EXPECT_EQ(GestureCatalog::isEnabled(Gesture(def.id)), offered(def.id)) << def.id;
            EXPECT_EQ(Gesture(def.id).sortKey(), position++) << def.id;
        }
    }
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
