// Swipes by mean displacement, rest swipes, and hold-three-lift-two with its slide.
#include "recognition/touch_pad.h"

namespace ostrelle::testing {
namespace {

// n fingers land at t = 0 and all move by (dx, dy) at 0.05.
void swipe(TouchPad& pad, int fingers, double dx, double dy) {
    pad.hand(fingers).at(0.0).moveAllBy(dx, dy).at(0.05);
}

TEST(Swipes, ByMeanDisplacement) {
    expectFired("three past the threshold", {"3.swipe.right"}, [](auto& p) { swipe(p, 3, 0.1015625, 0); });
    expectFired("three below the threshold", {}, [](auto& p) { swipe(p, 3, 0.09375, 0); });
    expectFired("up", {"3.swipe.up"}, [](auto& p) { swipe(p, 3, 0, -0.125); });
    expectFired("a diagonal is vertical", {"3.swipe.down"}, [](auto& p) { swipe(p, 3, 0.125, 0.125); });
    expectFired("three must all go the same way", {}, [](auto& p) {
        p.hand(3).at(0.0).moveBy(1, 0.2, 0).moveBy(2, 0.2, 0).moveBy(3, 0, -0.05).at(0.05);
    });
    expectFired("three must all have moved", {}, [](auto& p) {
        p.hand(3).at(0.0).moveBy(1, 0.2, 0).moveBy(2, 0.2, 0).moveBy(3, 0.02, 0).at(0.05);
    });
    expectFired("four below the hand threshold", {}, [](auto& p) { swipe(p, 4, 0, 0.05859375); });
    expectFired("four past the hand threshold", {"4.swipe.down"}, [](auto& p) { swipe(p, 4, 0, 0.0625); });
    expectFired("a hand tolerates a finger that barely moved", {"5.swipe.left"},
                [](auto& p) { p.hand(5).at(0.0).moveAllBy(-0.1, 0).moveBy(5, 0.1, 0).at(0.05); });
    expectFired("but not a moved finger going elsewhere", {},
                [](auto& p) { p.hand(4).at(0.0).moveAllBy(-0.1, 0).moveBy(4, 0.1, 0.05).at(0.05); });
    expectFired("not with fewer fingers down than landed", {},
                [](auto& p) { p.hand(4).at(0.0).lift(4).at(0.3).moveAllBy(0, 0.2).at(0.35); });
    expectFired("displacement counts from the last landing", {}, [](auto& p) {
        p.hand(3).at(0.0).moveAllBy(0.08, 0).at(0.05).land(4, 0.7, 0.6).at(0.06);
        p.moveAllBy(0.05, 0).at(0.1).liftAll().at(0.12);
    });
    expectFired("a swipe consumes its session only", {"3.swipe.right", "3.tap"}, [](auto& p) {
        swipe(p, 3, 0.125, 0);
        p.moveAllBy(0.125, 0).at(0.1).moveAllBy(0, 0.3).at(0.15).liftAll().at(0.2);
        p.hand(3).at(0.5).liftAll().at(0.6);
    });
}

// A resting finger at (0.5, 0.5) from t = 0, and a slider landing at x at time `landed`.
TouchPad& restAndSlide(TouchPad& pad, double x, double landed, double dy) {
    pad.land(1, 0.5, 0.5).at(0.0).land(2, x, 0.4).at(landed);
    return pad.moveBy(2, 0, dy).at(landed + 0.1);
}

TEST(RestSwipes, SlidingBesideARestingFinger) {
    expectFired("down on the left", {"2.restSwipe.down.left"},
                [](auto& p) { restAndSlide(p, 0.4, 0.1, 0.13); });
    expectFired("up on the right", {"2.restSwipe.up.right"},
                [](auto& p) { restAndSlide(p, 0.6, 0.1, -0.13); });
    expectFired("slider landed within the group window", {},
                [](auto& p) { restAndSlide(p, 0.4, 0.05, 0.13); });
    expectFired("slider landed the group window later", {"2.restSwipe.down.left"},
                [](auto& p) { restAndSlide(p, 0.4, 0.08, 0.13); });
    expectFired("a lone slider the group gap away", {}, [](auto& p) {
        p.land(1, 0.0, 0.4).at(0.0).land(2, 0.3, 0.4).at(0.1).moveBy(2, 0, 0.13).at(0.2);
    });
    expectFired("sideways", {}, [](auto& p) { restAndSlide(p, 0.4, 0.1, 0).moveBy(2, -0.2, 0).at(0.3); });
    expectFired("once per session", {"2.restSwipe.down.left"},
                [](auto& p) { restAndSlide(p, 0.4, 0.1, 0.13).liftAll().at(0.5); });
    expectFired("two sliders", {"3.restSwipe.down.left"}, [](auto& p) {
        p.land(1, 0.7, 0.5).at(0.0).land(2, 0.4, 0.4).land(3, 0.5, 0.4).at(0.2);
        p.moveBy(2, 0, 0.13).moveBy(3, 0, 0.13).at(0.3);
    });
    expectFired("a finger neither resting nor moving", {}, [](auto& p) {
        p.land(1, 0.5, 0.5).at(0.0).land(2, 0.4, 0.4).at(0.1);
        p.moveBy(1, 0.09, 0).moveBy(2, 0, 0.13).at(0.2);
    });
}

// Three fingers held still from t = 0; fingers 1 and 3 lift at 0.5 and `secondLift`.
TouchPad& holdThreeLiftTwo(TouchPad& pad, double secondLift = 0.55) {
    pad.land(1, 0.4, 0.05).land(2, 0.5, 0.0).land(3, 0.6, 0.05).at(0.0).at(0.2);
    if (secondLift == 0.5) return pad.lift(1).lift(3).at(0.5);
    return pad.lift(1).at(0.5).lift(3).at(secondLift);
}

TEST(HoldThreeLiftTwo, LiftOrSlideTheLastFinger) {
    expectFired("lift it", {"3.restRemove"}, [](auto& p) { holdThreeLiftTwo(p).at(0.7).liftAll().at(0.8); });
    expectFired("slide it", {"3.restRemove.left"},
                [](auto& p) { holdThreeLiftTwo(p).moveBy(2, -0.13, 0).at(0.7).liftAll().at(0.8); });
    expectFired("slide it exactly the threshold", {"3.restRemove"},
                [](auto& p) { holdThreeLiftTwo(p).moveBy(2, 0, 0.12).at(0.7).liftAll().at(0.8); });
    expectFired("slide it past the threshold", {"3.restRemove.down"},
                [](auto& p) { holdThreeLiftTwo(p).moveBy(2, 0, 0.125).at(0.7); });
    expectFired("two fingers lifting in one frame", {"3.restRemove"},
                [](auto& p) { holdThreeLiftTwo(p, 0.5).liftAll().at(0.8); });
    expectFired("a brief finger is a rest tap instead", {"3.restTap.between"}, [](auto& p) {
        p.land(1, 0.3, 0.5).land(2, 0.7, 0.5).at(0.0).land(3, 0.5, 0.45).at(0.25);
        p.lift(3).at(0.45).lift(1).at(0.6).liftAll().at(0.8);
    });
    expectFired("fingers that drifted are not holding", {}, [](auto& p) {
        p.land(1, 0.4, 0.5).land(2, 0.5, 0.45).land(3, 0.6, 0.5).at(0.0).moveBy(1, 0, 0.09).at(0.2);
        p.lift(1).lift(3).at(0.5).liftAll().at(0.8);
    });
}

}  // namespace
}  // namespace ostrelle::testing
