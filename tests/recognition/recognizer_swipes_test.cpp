// Swipes by mean displacement, rest swipes, and hold-three-lift-two with its slide.
#include <gtest/gtest.h>

#include "recognition/touch_pad.h"

namespace ostrelle::testing {
namespace {

TouchPad& landHand(TouchPad& pad, int fingers, double t = 0.0) {
    for (int i = 0; i < fingers; ++i) pad.land(i + 1, 0.3 + 0.08 * i, 0.5 + 0.01 * i);
    return pad.at(t);
}

TEST(Swipes, ThreeFingersPastTheMeanThresholdSwipe) {
    TouchPad pad;
    landHand(pad, 3).moveAllBy(0.05, 0).at(0.05);
    EXPECT_TRUE(pad.fired().empty());
    pad.moveAllBy(0.0515625, 0).at(0.1);
    EXPECT_EQ(pad.fired(), Ids{"3.swipe.right"});
}

TEST(Swipes, ThreeFingersJustBelowTheThresholdDoNot) {
    TouchPad pad;
    landHand(pad, 3).moveAllBy(0.09375, 0).at(0.05);
    EXPECT_TRUE(pad.fired().empty());
}

TEST(Swipes, EveryDirection) {
    const std::pair<std::pair<double, double>, const char*> cases[] = {
        {{0, -0.125}, "3.swipe.up"},
        {{0, 0.125}, "3.swipe.down"},
        {{-0.125, 0}, "3.swipe.left"},
        {{0.125, 0}, "3.swipe.right"},
        {{0.125, 0.125}, "3.swipe.down"},  // an exact diagonal is vertical
        {{-0.125, -0.125}, "3.swipe.up"},
    };
    for (const auto& [move, id] : cases) {
        TouchPad pad;
        landHand(pad, 3).moveAllBy(move.first, move.second).at(0.05);
        EXPECT_EQ(pad.fired(), Ids{id});
    }
}

TEST(Swipes, ThreeFingersMustAllMoveTheSameWay) {
    TouchPad pad;
    landHand(pad, 3).moveBy(1, 0.2, 0).moveBy(2, 0.2, 0).moveBy(3, 0, -0.05).at(0.05);
    EXPECT_TRUE(pad.fired().empty());
}

TEST(Swipes, ThreeFingersMustAllHaveMoved) {
    TouchPad pad;
    landHand(pad, 3).moveBy(1, 0.2, 0).moveBy(2, 0.2, 0).moveBy(3, 0.02, 0).at(0.05);
    EXPECT_TRUE(pad.fired().empty());
}

TEST(Swipes, FourFingersNeedMoreThanTheHandThreshold) {
    TouchPad below;
    landHand(below, 4).moveAllBy(0, 0.05859375).at(0.05);
    EXPECT_TRUE(below.fired().empty());
    TouchPad above;
    landHand(above, 4).moveAllBy(0, 0.0625).at(0.05);
    EXPECT_EQ(above.fired(), Ids{"4.swipe.down"});
}

TEST(Swipes, AHandSwipeToleratesAFingerThatBarelyMoved) {
    TouchPad pad;
    landHand(pad, 5).moveAllBy(-0.1, 0).move(5, 0.62, 0.54).at(0.05);
    EXPECT_EQ(pad.fired(), Ids{"5.swipe.left"});
}

TEST(Swipes, AHandSwipeRejectsAMovedFingerGoingElsewhere) {
    TouchPad pad;
    landHand(pad, 4).moveAllBy(-0.1, 0).moveBy(4, 0.1, 0.05).at(0.05);
    EXPECT_TRUE(pad.fired().empty());
}

TEST(Swipes, NotWhileFewerFingersAreDownThanLanded) {
    TouchPad pad;
    landHand(pad, 4).lift(4).at(0.3).moveAllBy(0, 0.2).at(0.35);
    EXPECT_TRUE(pad.fired().empty());
}

TEST(Swipes, DisplacementCountsFromTheLastLanding) {
    TouchPad pad;
    landHand(pad, 3).moveAllBy(0.08, 0).at(0.05).land(4, 0.7, 0.6).at(0.06);
    pad.moveAllBy(0.05, 0).at(0.1);
    EXPECT_TRUE(pad.fired().empty());
    pad.moveAllBy(0.02, 0).at(0.15);
    EXPECT_EQ(pad.fired(), Ids{"4.swipe.right"});
}

TEST(Swipes, ASwipeConsumesTheSession) {
    TouchPad pad;
    landHand(pad, 3).moveAllBy(0.125, 0).at(0.05).moveAllBy(0.125, 0).at(0.1).moveAllBy(0, 0.3).at(0.15);
    pad.liftAll().at(0.2);
    EXPECT_EQ(pad.fired(), Ids{"3.swipe.right"});
    EXPECT_FALSE(pad.recognizer.consumed());  // a new session starts clean
}

// A resting finger at (0.5, 0.5) from t = 0, and a slider landing at x at time `landed`.
TouchPad& restAndSlide(TouchPad& pad, double x, double landed, double dy) {
    pad.land(1, 0.5, 0.5).at(0.0).land(2, x, 0.4).at(landed);
    return pad.moveBy(2, 0, dy).at(landed + 0.1);
}

TEST(RestSwipes, SlidingBesideARestingFinger) {
    const std::tuple<double, double, const char*> cases[] = {
        {0.4, 0.13, "2.restSwipe.down.left"},
        {0.4, -0.13, "2.restSwipe.up.left"},
        {0.6, 0.13, "2.restSwipe.down.right"},
        {0.6, -0.13, "2.restSwipe.up.right"},
    };
    for (const auto& [x, dy, id] : cases) {
        TouchPad pad;
        restAndSlide(pad, x, 0.1, dy);
        EXPECT_EQ(pad.fired(), Ids{id});
    }
}

TEST(RestSwipes, TheSliderMustLandAfterTheGroupWindow) {
    TouchPad tooSoon;
    restAndSlide(tooSoon, 0.4, 0.05, 0.13);
    EXPECT_TRUE(tooSoon.fired().empty());
    TouchPad exactly;
    restAndSlide(exactly, 0.4, 0.08, 0.13);
    EXPECT_EQ(exactly.fired(), Ids{"2.restSwipe.down.left"});
}

TEST(RestSwipes, ALoneSliderMustLandNearTheRest) {
    TouchPad pad;
    pad.land(1, 0.0, 0.4).at(0.0).land(2, 0.3, 0.4).at(0.1).moveBy(2, 0, 0.13).at(0.2);
    EXPECT_TRUE(pad.fired().empty());
}

TEST(RestSwipes, SidewaysSlidesHaveNoGesture) {
    TouchPad pad;
    restAndSlide(pad, 0.4, 0.1, 0).moveBy(2, -0.2, 0).at(0.3);
    EXPECT_TRUE(pad.fired().empty());
}

TEST(RestSwipes, ARestSwipeUsesTheSessionButTheRestCanStillTap) {
    TouchPad pad;
    restAndSlide(pad, 0.4, 0.1, 0.13);
    pad.liftAll().at(0.5);
    EXPECT_EQ(pad.fired(), Ids{"2.restSwipe.down.left"});
}

TEST(RestSwipes, TwoSlidersBesideOneRest) {
    TouchPad pad;
    pad.land(1, 0.7, 0.5).at(0.0).land(2, 0.4, 0.4).land(3, 0.5, 0.4).at(0.2);
    pad.moveBy(2, 0, 0.13).moveBy(3, 0, 0.13).at(0.3);
    EXPECT_EQ(pad.fired(), Ids{"3.restSwipe.down.left"});
}

TEST(RestSwipes, AFingerNeitherRestingNorMovingBlocksIt) {
    TouchPad pad;
    pad.land(1, 0.5, 0.5).at(0.0).land(2, 0.4, 0.4).at(0.1);
    pad.moveBy(1, 0.09, 0).moveBy(2, 0, 0.13).at(0.2);
    EXPECT_TRUE(pad.fired().empty());
}

// Three fingers held still from t = 0; fingers 1 and 3 lift at `firstLift` and `secondLift`.
TouchPad& holdThreeLiftTwo(TouchPad& pad, double firstLift, double secondLift) {
    pad.land(1, 0.4, 0.5).land(2, 0.5, 0.45).land(3, 0.6, 0.5).at(0.0).at(0.2);
    if (secondLift == firstLift) return pad.lift(1).lift(3).at(secondLift);
    return pad.lift(1).at(firstLift).lift(3).at(secondLift);
}

TEST(HoldThreeLiftTwo, LiftingTheLastFingerFiresThePlainGesture) {
    TouchPad pad;
    holdThreeLiftTwo(pad, 0.5, 0.55).at(0.7).liftAll().at(0.8);
    EXPECT_EQ(pad.fired(), Ids{"3.restRemove"});
}

TEST(HoldThreeLiftTwo, SlidingTheLastFingerFiresTheSlide) {
    TouchPad pad;
    holdThreeLiftTwo(pad, 0.5, 0.55).moveBy(2, -0.13, 0).at(0.7);
    EXPECT_EQ(pad.fired(), Ids{"3.restRemove.left"});
    pad.liftAll().at(0.8);
    EXPECT_EQ(pad.fired(), Ids{"3.restRemove.left"});
}

TEST(HoldThreeLiftTwo, ASlideOfExactlyTheThresholdIsNotYetASlide) {
    TouchPad pad;
    holdThreeLiftTwo(pad, 0.5, 0.55).move(2, 0.5, 0.57).at(0.7);
    EXPECT_TRUE(pad.fired().empty());
    pad.move(2, 0.5, 0.58).at(0.75);
    EXPECT_EQ(pad.fired(), Ids{"3.restRemove.down"});
}

TEST(HoldThreeLiftTwo, BothLiftingInOneFrameAlsoCountsAndIsTraced) {
    TouchPad pad;
    holdThreeLiftTwo(pad, 0.5, 0.5);
    EXPECT_EQ(pad.traces().back(), "2 fingers lifted in one frame");
    pad.liftAll().at(0.8);
    EXPECT_EQ(pad.fired(), Ids{"3.restRemove"});
}

TEST(HoldThreeLiftTwo, ABriefFingerMakesItARestTapInstead) {
    TouchPad pad;
    pad.land(1, 0.3, 0.5).land(2, 0.7, 0.5).at(0.0).land(3, 0.5, 0.45).at(0.25);
    pad.lift(3).at(0.45).lift(1).at(0.6);
    EXPECT_EQ(pad.fired(), Ids{"3.restTap.between"});
    pad.liftAll().at(0.8);
    EXPECT_EQ(pad.fired(), Ids{"3.restTap.between"});
}

TEST(HoldThreeLiftTwo, FingersThatDriftedAreNotHolding) {
    TouchPad pad;
    pad.land(1, 0.4, 0.5).land(2, 0.5, 0.45).land(3, 0.6, 0.5).at(0.0).moveBy(1, 0, 0.09).at(0.2);
    pad.lift(1).lift(3).at(0.5).liftAll().at(0.8);
    EXPECT_TRUE(pad.fired().empty());
}

}  // namespace
}  // namespace ostrelle::testing
