// The built-in gesture catalog: contents, order, enabled subset and icon dots.
#include <gtest/gtest.h>

#include <limits>
#include <set>

#include "gestures/gesture_catalog.h"

namespace ostrelle {
namespace {

TEST(GestureCatalog, HoldsThirtyEightGesturesInFourGroups) {
    const auto& groups = GestureCatalog::allGroups();
    ASSERT_EQ(groups.size(), 4U);
    EXPECT_EQ(GestureCatalog::byID().size(), 38U);
    const std::vector<std::tuple<std::string, std::string, int, std::size_t>> expected{
        {"two", "2 fingers", 2, 6}, {"three", "3 fingers", 3, 18}, {"four", "4 fingers", 4, 7}, {"five", "5 fingers", 5, 7}};
    for (std::size_t i = 0; i < groups.size(); ++i) {
        const auto& [id, name, fingers, count] = expected[i];
        EXPECT_EQ(groups[i].id, id);
        EXPECT_EQ(groups[i].name, name);
        EXPECT_EQ(groups[i].fingers, fingers);
        EXPECT_EQ(groups[i].gestures.size(), count) << id;
        for (const GestureDef& def : groups[i].gestures) EXPECT_EQ(def.fingers, fingers) << def.id;
    }
}

TEST(GestureCatalog, OrderIsThePositionInTheWholeList) {
    const auto& order = GestureCatalog::order();
    EXPECT_EQ(order.at("2.restTap.left"), 0);
    EXPECT_EQ(order.at("3.click"), 6);
    EXPECT_EQ(order.at("3.restRemove"), 19);
    EXPECT_EQ(order.at("4.tap"), 24);
    EXPECT_EQ(order.at("5.swipe.right"), 37);
    EXPECT_EQ(Gesture("3.swipe.left").sortKey(), 17);
}

TEST(GestureCatalog, EnabledSubset) {
    EXPECT_EQ(GestureCatalog::enabled().size(), 29U);
    const auto& groups = GestureCatalog::groups();
    ASSERT_EQ(groups.size(), 4U);
    EXPECT_EQ(groups[0].gestures.size(), 6U);
    EXPECT_EQ(groups[1].gestures.size(), 9U);
    EXPECT_EQ(groups[2].gestures.size(), 7U);
    EXPECT_EQ(groups[3].gestures.size(), 7U);
    const auto& all = GestureCatalog::all();
    ASSERT_EQ(all.size(), 29U);
    EXPECT_EQ(all.front().id, "2.restTap.left");
    EXPECT_EQ(all.back().id, "5.swipe.right");
    EXPECT_EQ(&Gesture::all(), &all);
    for (const std::string& id : GestureCatalog::enabled()) EXPECT_TRUE(GestureCatalog::byID().contains(id)) << id;
    for (const char* off : {"3.restSwipe.down.left", "3.restSwipe.up.right", "3.restRemove", "3.restRemove.left"}) {
        EXPECT_FALSE(GestureCatalog::isEnabled(Gesture(off))) << off;
    }
}

TEST(GestureCatalog, EntriesAreBuiltWithTheirExactTexts) {
    const auto& byID = GestureCatalog::byID();
    const GestureDef& tap = byID.at("4.tap");
    EXPECT_EQ(tap.name, "Four-finger tap");
    EXPECT_EQ(tap.hint, "Rest four fingers lightly, then lift together.");
    EXPECT_EQ(tap.motion, Motion::tap);
    EXPECT_EQ(byID.at("5.doubleTap").hint, "Tap twice quickly with five fingers.");
    EXPECT_EQ(byID.at("3.click").name, "Three-finger click");
    EXPECT_EQ(byID.at("3.click").hint, "Press down with three fingers until the trackpad clicks.");
    const GestureDef& swipe = byID.at("4.swipe.left");
    EXPECT_EQ(swipe.name, "Four-finger swipe left");
    EXPECT_EQ(swipe.hint, "Slide four fingers left in one motion.");
    EXPECT_EQ(swipe.direction, SwipeDirection::left);
    const GestureDef& rest = byID.at("3.restSwipe.up.right");
    EXPECT_EQ(rest.name, "Hold one, slide two up on its right");
    EXPECT_EQ(rest.hint, "Rest one finger, then swipe two fingers up on its right.");
    EXPECT_FALSE(rest.motion.has_value());
    EXPECT_EQ(byID.at("2.restSwipe.down.left").hint, "Rest one finger, then swipe another finger down on its left.");
    EXPECT_EQ(byID.at("3.restRemove.down").name, "Hold three, lift all but one, slide it down");
}

TEST(GestureCatalog, GroupOrderKeepsTheThreeFingerAsymmetry) {
    std::vector<std::string> three;
    for (const GestureDef& def : GestureCatalog::groups()[1].gestures) three.push_back(def.id);
    EXPECT_EQ(three, (std::vector<std::string>{"3.click", "3.tap", "3.restTap.between", "3.restTap.left",
                                               "3.restTap.right", "3.swipe.up", "3.swipe.down", "3.swipe.left",
                                               "3.swipe.right"}));
    std::vector<std::string> four;
    for (const GestureDef& def : GestureCatalog::groups()[2].gestures) four.push_back(def.id);
    EXPECT_EQ(four, (std::vector<std::string>{"4.tap", "4.doubleTap", "4.click", "4.swipe.up", "4.swipe.down",
                                              "4.swipe.left", "4.swipe.right"}));
}

TEST(GestureCatalogDots, PlainGesturesUseTheHandLayout) {
    const auto& dots = GestureCatalog::byID().at("4.swipe.up").dots;
    ASSERT_EQ(dots.size(), 4U);
    EXPECT_EQ(dots[0], (Dot{0.27, 0.56, DotRole::swipe(SwipeDirection::up)}));
    EXPECT_EQ(dots[3], (Dot{0.73, 0.48, DotRole::swipe(SwipeDirection::up)}));
    EXPECT_EQ(GestureCatalog::byID().at("5.click").dots[4], (Dot{0.20, 0.76, DotRole::press()}));
}

TEST(GestureCatalogDots, RestGesturesPlaceRestingAndMovingFingers) {
    const auto& byID = GestureCatalog::byID();
    EXPECT_EQ(byID.at("2.restTap.left").dots,
              (std::vector<Dot>{{0.62, 0.52, DotRole::rest()}, {0.36, 0.46, DotRole::tap()}}));
    EXPECT_EQ(byID.at("3.restSwipe.down.right").dots,
              (std::vector<Dot>{{0.3, 0.5, DotRole::rest()},
                                {0.55, 0.38, DotRole::swipe(SwipeDirection::down)},
                                {0.72, 0.38, DotRole::swipe(SwipeDirection::down)}}));
    EXPECT_EQ(byID.at("2.restSwipe.up.left").dots,
              (std::vector<Dot>{{0.7, 0.5, DotRole::rest()}, {0.36, 0.62, DotRole::swipe(SwipeDirection::up)}}));
    const auto& remove = byID.at("3.restRemove.left").dots;
    ASSERT_EQ(remove.size(), 3U);
    EXPECT_EQ(remove[0].role, DotRole::lift());
    EXPECT_EQ(remove[1], (Dot{0.5, 0.42, DotRole::swipe(SwipeDirection::left)}));
    EXPECT_EQ(byID.at("3.restRemove").dots[1].role, DotRole::rest());
}

TEST(GestureCatalogDots, ThreeFingerRestTapsPutTheTapWhereTheNameSays) {
    for (const auto& [id, where] : std::vector<std::pair<std::string, int>>{
             {"3.restTap.left", -1}, {"3.restTap.between", 0}, {"3.restTap.right", 1}}) {
        const auto& dots = GestureCatalog::byID().at(id).dots;
        ASSERT_EQ(dots.size(), 3U);
        std::vector<double> rests;
        double tapX = 0;
        for (const Dot& dot : dots) {
            if (dot.role == DotRole::rest()) rests.push_back(dot.x);
            if (dot.role == DotRole::tap()) tapX = dot.x;
        }
        ASSERT_EQ(rests.size(), 2U) << id;
        const double a = std::min(rests[0], rests[1]);
        const double b = std::max(rests[0], rests[1]);
        const int side = tapX < a ? -1 : (tapX > b ? 1 : 0);
        EXPECT_EQ(side, where) << id;
    }
}

TEST(GestureCatalog, KnownGesturesAreSharedShapelessValues) {
    const Gesture* known = GestureCatalog::known("3.restRemove");
    ASSERT_NE(known, nullptr);
    EXPECT_EQ(known->id, "3.restRemove");
    EXPECT_FALSE(known->custom.has_value());
    EXPECT_EQ(GestureCatalog::known("3.doubleTap"), nullptr);
    EXPECT_EQ(GestureCatalog::find("2.tap"), nullptr);
}

}  // namespace
}  // namespace ostrelle
