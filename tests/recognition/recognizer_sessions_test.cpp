// Sessions: dropouts, stray contacts, re-landing fingers, and the hand path.
#include <gtest/gtest.h>

#include <cmath>

#include "recognition/touch_pad.h"

namespace ostrelle::testing {
namespace {

TouchPad& landThree(TouchPad& pad) { return pad.land(1, 0.4, 0.5).land(2, 0.5, 0.45).land(3, 0.6, 0.5); }

TEST(Dropouts, AFiredSessionThatResumesFiresNothingMore) {
    TouchPad pad;
    landThree(pad).at(0.0);
    pad.liftAll().at(0.1);  // the hardware lost every finger for one frame: a tap fires
    landThree(pad).at(0.11).moveAllBy(0.2, 0).at(0.15).at(0.2).liftAll().at(0.3);
    EXPECT_EQ(pad.fired(), Ids{"3.tap"});
}

TEST(Dropouts, ResumingKeepsAConsumedSessionConsumed) {
    TouchPad pad;
    landThree(pad).at(0.0).moveAllBy(0.125, 0).at(0.05);
    pad.liftAll().at(0.1);
    landThree(pad).moveAllBy(0.125, 0).at(0.114).moveAllBy(0.2, 0).at(0.15).liftAll().at(0.2);
    EXPECT_EQ(pad.fired(), Ids{"3.swipe.right"});
}

TEST(Dropouts, AGapOfTheWindowOrMoreStartsANewSession) {
    TouchPad pad;
    landThree(pad).at(0.0).moveAllBy(0.125, 0).at(0.0625);
    pad.liftAll().at(0.125);
    landThree(pad).at(0.14).moveAllBy(0.125, 0).at(0.2);
    EXPECT_EQ(pad.fired(), (Ids{"3.swipe.right", "3.swipe.right"}));
}

TEST(Dropouts, EntirelyNewFingersStartANewSession) {
    TouchPad pad;
    landThree(pad).at(0.0).moveAllBy(0.125, 0).at(0.05);
    pad.liftAll().at(0.1);
    pad.land(7, 0.4, 0.5).land(8, 0.5, 0.5).land(9, 0.6, 0.5).at(0.105).moveAllBy(0.125, 0).at(0.15);
    EXPECT_EQ(pad.fired(), (Ids{"3.swipe.right", "3.swipe.right"}));
}

TEST(Strays, AFarLateContactIsLeftOutForTheRestOfTheSession) {
    TouchPad pad;
    landThree(pad).at(0.0).land(4, 0.95, 0.9).at(0.2);
    EXPECT_EQ(pad.recognizer.touching(), 3);
    pad.lift(1).lift(2).lift(3).at(0.24);  // only the stray is still down: the session ends
    EXPECT_EQ(pad.fired(), Ids{"3.tap"});
}

TEST(Strays, AFarContactThatLandedWithTheOthersIsKept) {
    TouchPad pad;
    landThree(pad).at(0.0).land(4, 0.95, 0.9).at(0.08);
    EXPECT_EQ(pad.recognizer.touching(), 4);
    pad.liftAll().at(0.2);
    EXPECT_EQ(pad.fired(), Ids{"4.tap"});
}

TEST(Strays, TwoEqualGroupsHaveNoStrays) {
    TouchPad pad;
    pad.land(1, 0.1, 0.5).land(2, 0.2, 0.5).at(0.0).land(3, 0.8, 0.5).land(4, 0.9, 0.5).at(0.2);
    EXPECT_EQ(pad.recognizer.touching(), 4);
}

TEST(Strays, ContactsChainIntoOneGroupThroughNeighbours) {
    // Each is within reach of the next, so all four form one group although the ends are far apart.
    TouchPad pad;
    pad.land(1, 0.1, 0.5).land(2, 0.35, 0.5).land(3, 0.6, 0.5).at(0.0).land(4, 0.85, 0.5).at(0.5);
    EXPECT_EQ(pad.recognizer.touching(), 4);
}

TEST(Tracks, AFingerLandingAgainUnderItsIdIsAFreshTrack) {
    // Finger 2 lifts and lands again under the same id; its second touch is a rest tap of its own.
    TouchPad pad;
    pad.land(1, 0.4, 0.5).land(2, 0.6, 0.5).at(0.0).lift(2).at(0.1);
    EXPECT_TRUE(pad.fired().empty());
    pad.land(2, 0.6, 0.5).at(0.3).lift(2).at(0.4);
    EXPECT_EQ(pad.fired(), Ids{"2.restTap.right"});
}

TEST(HandPath, SmallCentroidMovesAddNoPoint) {
    TouchPad pad;
    landThree(pad).at(0.0);
    EXPECT_EQ(pad.recognizer.pathCount(), 1U);
    pad.moveAllBy(0.003, 0).at(0.01);
    EXPECT_EQ(pad.recognizer.pathCount(), 1U);
    pad.moveAllBy(0.003, 0).at(0.02);
    EXPECT_EQ(pad.recognizer.pathCount(), 2U);
}

TEST(HandPath, NeverHoldsMoreThan1024Points) {
    TouchPad pad;
    landThree(pad).at(0.0);
    // Circling slowly: the centroid keeps moving but no swipe ever fires.
    for (int i = 1; i <= 3000; ++i) {
        const double angle = i * 0.2;
        const double dx = 0.02 * std::cos(angle);
        const double dy = 0.02 * std::sin(angle);
        pad.move(1, 0.4 + dx, 0.5 + dy).move(2, 0.5 + dx, 0.45 + dy).move(3, 0.6 + dx, 0.5 + dy).at(i * 0.008);
    }
    EXPECT_EQ(pad.recognizer.pathCount(), 1024U);
    EXPECT_TRUE(pad.fired().empty());
    for (const Stroke& stroke : pad.recognizer.liveStrokes()) EXPECT_EQ(stroke.size(), 1024U);
}

TEST(HandPath, RestartsWhenAnotherFingerLands) {
    TouchPad pad;
    landThree(pad).at(0.0).moveAllBy(0.01, 0).at(0.01).moveAllBy(0.01, 0).at(0.02);
    EXPECT_EQ(pad.recognizer.pathCount(), 3U);
    pad.land(4, 0.7, 0.5).at(0.03);
    EXPECT_EQ(pad.recognizer.pathCount(), 1U);
    EXPECT_EQ(pad.recognizer.liveStrokes().size(), 4U);
}

TEST(HandPath, NotRecordedWhileFewerFingersAreDown) {
    TouchPad pad;
    landThree(pad).at(0.0).lift(3).at(0.01).moveAllBy(0.1, 0).at(0.02);
    EXPECT_EQ(pad.recognizer.pathCount(), 1U);
}

TEST(HandPath, LiveStrokesAreInAscendingFingerId) {
    TouchPad pad;
    pad.land(30, 0.6, 0.5).land(-4, 0.4, 0.5).land(7, 0.5, 0.5).at(0.0);
    const std::vector<Stroke> strokes = pad.recognizer.liveStrokes();
    ASSERT_EQ(strokes.size(), 3U);
    EXPECT_EQ(strokes[0].front(), (Point{0.4, 0.5}));
    EXPECT_EQ(strokes[1].front(), (Point{0.5, 0.5}));
    EXPECT_EQ(strokes[2].front(), (Point{0.6, 0.5}));
}

TEST(Sessions, AnEmptyFrameWithoutASessionDoesNothing) {
    TouchPad pad;
    pad.at(0.0).at(0.1);
    EXPECT_FALSE(pad.last().has_value());
    EXPECT_EQ(pad.recognizer.touching(), 0);
}

}  // namespace
}  // namespace ostrelle::testing
