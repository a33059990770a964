// Multi-finger taps, double taps and physical clicks.
#include <gtest/gtest.h>

#include "recognition/touch_pad.h"

namespace ostrelle::testing {
namespace {

// Three fingers resting lightly, close together.
TouchPad& landThree(TouchPad& pad) { return pad.land(1, 0.4, 0.5).land(2, 0.5, 0.45).land(3, 0.6, 0.5); }
TouchPad& landFour(TouchPad& pad) { return landThree(pad).land(4, 0.7, 0.55); }

TEST(Taps, ThreeFingerTapLastingExactlyTheLimitIsAccepted) {
    TouchPad pad;
    landThree(pad).at(1.0).at(1.1).liftAll().at(1.25);
    EXPECT_EQ(pad.fired(), Ids{"3.tap"});
}

TEST(Taps, HeldJustPastTheLimitIsRejected) {
    TouchPad pad;
    landThree(pad).at(1.0).liftAll().at(1.2501);
    EXPECT_TRUE(pad.fired().empty());
    // The session end first tries the last finger down as a rest tap, then the plain tap.
    EXPECT_EQ(pad.traces(), (Ids{"rest+tap (3 fingers) rejected: rest held 0.000 s before the tap (min 0.15)",
                                 "3-finger tap rejected: held 0.25 s"}));
}

TEST(Taps, FingerMovingTheTapLimitRejectsAndJustBelowAccepts) {
    TouchPad moved;
    moved.land(1, 0.0, 0.5).land(2, 0.1, 0.5).land(3, 0.2, 0.5).at(0.0);
    moved.move(1, 0.03, 0.5).at(0.05).liftAll().at(0.1);
    EXPECT_TRUE(moved.fired().empty());
    EXPECT_EQ(moved.traces().back(), "3-finger tap rejected: moved 0.030");

    TouchPad still;
    still.land(1, 0.25, 0.5).land(2, 0.35, 0.5).land(3, 0.45, 0.5).at(0.0);
    still.move(1, 0.2734375, 0.5).at(0.05).liftAll().at(0.1);
    EXPECT_EQ(still.fired(), Ids{"3.tap"});
}

TEST(Taps, LandingSpreadOfTheLimitIsRejected) {
    // Four fingers, so the late finger cannot be read as a rest tap instead.
    TouchPad pad;
    landThree(pad).at(0.0625).land(4, 0.7, 0.55).at(0.2125);
    pad.liftAll().at(0.3125);
    EXPECT_TRUE(pad.fired().empty());
    EXPECT_EQ(pad.traces().back(), "4-finger tap rejected: landed 0.150 s apart");
}

TEST(Taps, LiftSpreadOfExactlyTheGroupWindowPassesAndMoreRejects) {
    TouchPad exact;
    landThree(exact).at(-0.1).lift(1).at(0.0).liftAll().at(0.08);
    EXPECT_EQ(exact.fired(), Ids{"3.tap"});

    TouchPad spread;
    landThree(spread).at(0.0).lift(1).at(0.125).liftAll().at(0.2109375);
    EXPECT_TRUE(spread.fired().empty());
    EXPECT_EQ(spread.traces().back(), "3-finger tap rejected: lifted 0.086 s apart");
}

TEST(Taps, OneAndTwoFingerRejectionsAreSilent) {
    TouchPad pad;
    pad.land(1, 0.5, 0.5).at(0.0).liftAll().at(1.0);
    pad.land(1, 0.5, 0.5).land(2, 0.6, 0.5).at(2.0).liftAll().at(3.0);
    EXPECT_TRUE(pad.fired().empty());
    for (const std::string& line : pad.traces()) EXPECT_EQ(line.find("finger tap rejected"), std::string::npos) << line;
}

TEST(DoubleTaps, SecondTapWithinTheWindowInclusiveIsADoubleTap) {
    TouchPad pad;
    landFour(pad).at(0.0).liftAll().at(0.125);
    landFour(pad).at(0.3).liftAll().at(0.475);
    EXPECT_EQ(pad.fired(), (Ids{"4.tap", "4.doubleTap"}));
}

TEST(DoubleTaps, SecondTapJustOutsideTheWindowIsAnotherSingleTap) {
    TouchPad pad;
    landFour(pad).at(0.0).liftAll().at(0.125);
    landFour(pad).at(0.3).liftAll().at(0.4750001);
    EXPECT_EQ(pad.fired(), (Ids{"4.tap", "4.tap"}));
}

TEST(DoubleTaps, FingerCountMustMatch) {
    TouchPad pad;
    landThree(pad).at(0.0).liftAll().at(0.1);
    landFour(pad).at(0.2).liftAll().at(0.3);
    EXPECT_EQ(pad.fired(), (Ids{"3.tap", "4.tap"}));
}

TEST(DoubleTaps, ADoubleTapDisarmsSoAThirdTapIsSingle) {
    TouchPad pad;
    landFour(pad).at(0.0).liftAll().at(0.1);
    landFour(pad).at(0.2).liftAll().at(0.3);
    landFour(pad).at(0.4).liftAll().at(0.5);
    EXPECT_EQ(pad.fired(), (Ids{"4.tap", "4.doubleTap", "4.tap"}));
}

TEST(DoubleTaps, WithoutACatalogDoubleTapTheSecondTapIsSingleAndRearms) {
    // Three fingers have no double tap: every quick tap is a single tap that arms the next.
    TouchPad pad;
    for (double t : {0.0, 0.2, 0.4}) landThree(pad).at(t).liftAll().at(t + 0.1);
    EXPECT_EQ(pad.fired(), (Ids{"3.tap", "3.tap", "3.tap"}));
}

TEST(DoubleTaps, ARejectedTapLeavesTheArmedTapAlone) {
    TouchPad pad;
    landFour(pad).at(0.0).liftAll().at(0.1);
    landFour(pad).at(0.15).moveBy(1, 0.05, 0.0).at(0.17).liftAll().at(0.19);  // moved: rejected
    landFour(pad).at(0.3).liftAll().at(0.4);
    EXPECT_EQ(pad.fired(), (Ids{"4.tap", "4.doubleTap"}));
}

TEST(Clicks, TwoFingersDoNothingAndLeaveTheSessionOpen) {
    TouchPad pad;
    pad.land(1, 0.4, 0.5).land(2, 0.5, 0.5).at(0.0).click(0.05);
    EXPECT_FALSE(pad.last().has_value());
    EXPECT_FALSE(pad.recognizer.consumed());
}

TEST(Clicks, ThreeFingersClickAndConsumeTheSession) {
    TouchPad pad;
    landThree(pad).at(0.0).click(0.05);
    EXPECT_EQ(pad.fired(), Ids{"3.click"});
    EXPECT_TRUE(pad.recognizer.consumed());
    pad.click(0.06).liftAll().at(0.1);  // no second click, no tap
    EXPECT_EQ(pad.fired(), Ids{"3.click"});
}

TEST(Clicks, UnknownClickStillConsumesSoNoTapFollows) {
    TouchPad pad;
    for (std::int64_t id = 1; id <= 6; ++id) pad.land(id, 0.3 + 0.05 * static_cast<double>(id), 0.5);
    pad.at(0.0).click(0.05);
    EXPECT_FALSE(pad.last().has_value());
    EXPECT_TRUE(pad.recognizer.consumed());
    pad.liftAll().at(0.1);
    EXPECT_TRUE(pad.fired().empty());
}

TEST(Clicks, FourAndFiveFingerClicks) {
    TouchPad four;
    landFour(four).at(0.0).click(0.05);
    EXPECT_EQ(four.fired(), Ids{"4.click"});
    TouchPad five;
    landFour(five).land(5, 0.45, 0.7).at(0.0).click(0.05);
    EXPECT_EQ(five.fired(), Ids{"5.click"});
}

}  // namespace
}  // namespace ostrelle::testing
