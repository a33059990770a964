// Rest taps: one finger taps while one or two others stay down.
#include <gtest/gtest.h>

#include "recognition/touch_pad.h"

namespace ostrelle::testing {
namespace {

// A resting finger at x, down from t = 0; a tap lands at tapX at 0.2 and lifts at 0.3.
TouchPad& restThenTap(TouchPad& pad, double restX, double tapX, double tapY = 0.5) {
    pad.land(1, restX, 0.5).at(0.0).at(0.1);
    return pad.land(2, tapX, tapY).at(0.2).lift(2).at(0.3);
}

TEST(RestTaps, TapOnEitherSideOfOneRestingFinger) {
    TouchPad right;
    restThenTap(right, 0.4, 0.55);
    EXPECT_EQ(right.fired(), Ids{"2.restTap.right"});
    TouchPad left;
    restThenTap(left, 0.4, 0.25);
    EXPECT_EQ(left.fired(), Ids{"2.restTap.left"});
}

TEST(RestTaps, ARestTapUsesUpTheSession) {
    TouchPad pad;
    restThenTap(pad, 0.4, 0.55).liftAll().at(0.8);
    EXPECT_EQ(pad.fired(), Ids{"2.restTap.right"});
}

TEST(RestTaps, DecidedAtSessionEndWhenBothLiftTogether) {
    TouchPad pad;
    pad.land(1, 0.4, 0.5).at(0.0).land(2, 0.55, 0.5).at(0.2).liftAll().at(0.3);
    EXPECT_EQ(pad.fired(), Ids{"2.restTap.right"});
}

TEST(RestTaps, NotAtSessionEndWhenTheRestLiftedFirst) {
    TouchPad pad;
    pad.land(1, 0.4, 0.5).at(0.0).land(2, 0.55, 0.5).at(0.2).lift(1).at(0.25).liftAll().at(0.3);
    EXPECT_TRUE(pad.fired().empty());
}

struct RejectedRestTap {
    const char* name;
    double restX;
    double tapX;
    const char* trace;
};

class RestTapGaps : public ::testing::TestWithParam<RejectedRestTap> {};

TEST_P(RestTapGaps, AreRejectedWithTheReason) {
    TouchPad pad;
    restThenTap(pad, GetParam().restX, GetParam().tapX);
    EXPECT_TRUE(pad.fired().empty());
    ASSERT_FALSE(pad.traces().empty());
    EXPECT_EQ(pad.traces().front(), GetParam().trace);
}

INSTANTIATE_TEST_SUITE_P(
    RestTaps, RestTapGaps,
    ::testing::Values(
        RejectedRestTap{"SameX", 0.4, 0.4, "rest+tap (2 fingers) rejected: tap 0.000 from the resting finger"},
        RejectedRestTap{"BelowTheLeastGap", 0.25, 0.2734375,
                        "rest+tap (2 fingers) rejected: tap 0.023 from the resting finger"},
        RejectedRestTap{"ExactlyTheLargestDistance", 0.0, 0.3,
                        "rest+tap (2 fingers) rejected: tap 0.300 from the resting finger (max 0.3)"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(RestTaps, TheLeastGapItselfIsEnough) {
    TouchPad pad;
    restThenTap(pad, 0.0, 0.03);
    EXPECT_EQ(pad.fired(), Ids{"2.restTap.right"});
}

TEST(RestTaps, TapHeldTooLong) {
    TouchPad pad;
    pad.land(1, 0.4, 0.5).at(0.0).land(2, 0.55, 0.5).at(0.2).lift(2).at(0.6125);
    EXPECT_TRUE(pad.fired().empty());
    EXPECT_EQ(pad.traces().front(), "rest+tap (2 fingers) rejected: tap held 0.41 s");
}

TEST(RestTaps, TapHeldExactlyTheLimitIsAccepted) {
    TouchPad pad;
    pad.land(1, 0.4, 0.5).at(0.0).land(2, 0.55, 0.5).at(0.25).lift(2).at(0.65);
    EXPECT_EQ(pad.fired(), Ids{"2.restTap.right"});
}

TEST(RestTaps, TapThatMoved) {
    TouchPad pad;
    pad.land(1, 0.4, 0.5).at(0.0).land(2, 0.55, 0.5).at(0.2).move(2, 0.55, 0.57).at(0.25).lift(2).at(0.3);
    EXPECT_EQ(pad.traces().front(), "rest+tap (2 fingers) rejected: tap moved 0.070");
}

TEST(RestTaps, RestThatDrifted) {
    TouchPad pad;
    pad.land(1, 0.4, 0.5).at(0.0).land(2, 0.6, 0.5).at(0.2).move(1, 0.4, 0.625).at(0.25).lift(2).at(0.3);
    EXPECT_EQ(pad.traces().front(), "rest+tap (2 fingers) rejected: rest drifted 0.125");
}

TEST(RestTaps, RestNotHeldLongEnoughBeforeTheTap) {
    TouchPad pad;
    pad.land(1, 0.4, 0.5).at(0.0).land(2, 0.55, 0.5).at(0.125).lift(2).at(0.2);
    EXPECT_EQ(pad.traces().front(), "rest+tap (2 fingers) rejected: rest held 0.125 s before the tap (min 0.15)");
}

// Two resting fingers at x 0.3 and 0.7 from t = 0; a third taps at x.
TouchPad& twoRestsThenTap(TouchPad& pad, double x) {
    pad.land(1, 0.3, 0.5).land(2, 0.7, 0.5).at(0.0).at(0.1);
    return pad.land(3, x, 0.45).at(0.2).lift(3).at(0.3);
}

TEST(RestTaps, ThirdFingerLeftRightOrBetween) {
    const std::pair<double, const char*> cases[] = {
        {0.2, "3.restTap.left"}, {0.8, "3.restTap.right"}, {0.5, "3.restTap.between"},
        {0.3, "3.restTap.between"},  // on the left rest's x: still between
        {0.7, "3.restTap.between"},
    };
    for (const auto& [x, id] : cases) {
        TouchPad pad;
        twoRestsThenTap(pad, x);
        EXPECT_EQ(pad.fired(), Ids{id}) << "tap at x " << x;
    }
}

TEST(RestTaps, RestingFingersSlidingTogetherAreNotResting) {
    TouchPad pad;
    pad.land(1, 0.3, 0.5).land(2, 0.5, 0.5).at(0.0).land(3, 0.7, 0.45).at(0.2);
    pad.moveBy(1, 0.04, 0).moveBy(2, 0.04, 0).at(0.25).lift(3).at(0.3);
    EXPECT_TRUE(pad.fired().empty());
    EXPECT_EQ(pad.traces().front(), "rest+tap (3 fingers) rejected: resting fingers slid together");
}

TEST(RestTaps, AnEarlierTwoFingerScrollBlocksRestTaps) {
    TouchPad pad;
    pad.land(1, 0.3, 0.3).land(2, 0.5, 0.3).at(0.0).moveAllBy(0, 0.125).at(0.1);
    pad.land(3, 0.7, 0.45).at(0.4).lift(3).at(0.5);
    EXPECT_TRUE(pad.fired().empty());
    EXPECT_EQ(pad.traces().front(), "rest+tap (3 fingers) rejected: two fingers scrolled earlier this session");
}

TEST(RestTaps, ScrollOfExactlyTheLimitIsNotAScroll) {
    TouchPad pad;
    pad.land(1, 0.3, 0.0).land(2, 0.5, 0.0).at(0.0).moveAllBy(0, 0.12).at(0.1);
    pad.land(3, 0.7, 0.1).at(0.4).lift(3).at(0.5);
    EXPECT_EQ(pad.fired(), Ids{"3.restTap.right"});
}

}  // namespace
}  // namespace ostrelle::testing
