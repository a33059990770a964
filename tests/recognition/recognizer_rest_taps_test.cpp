// Rest taps: one finger taps while one or two others stay down.
#include "recognition/touch_pad.h"

namespace ostrelle::testing {
namespace {

// A resting finger at x, down from t = 0; a tap lands at tapX at 0.2 and lifts at 0.3.
TouchPad& restThenTap(TouchPad& pad, double restX, double tapX) {
    pad.land(1, restX, 0.5).at(0.0).at(0.1);
    return pad.land(2, tapX, 0.5).at(0.2).lift(2).at(0.3);
}

// Two resting fingers at x 0.3 and 0.7 from t = 0; a third taps at x.
TouchPad& twoRestsThenTap(TouchPad& pad, double x) {
    pad.land(1, 0.3, 0.5).land(2, 0.7, 0.5).at(0.0).at(0.1);
    return pad.land(3, x, 0.45).at(0.2).lift(3).at(0.3);
}

// A finger resting at (0.4, 0.5) from t = 0, and a second landing at (0.55, 0.5) at t.
TouchPad& restAndLand(TouchPad& pad, double t) {
    return pad.land(1, 0.4, 0.5).at(0.0).land(2, 0.55, 0.5).at(t);
}

TEST(RestTaps, BesideOneRestingFinger) {
    const std::string rejected = "rest+tap (2 fingers) rejected: ";
    expectFired("on the right", {"2.restTap.right"}, [](auto& p) { restThenTap(p, 0.4, 0.55); });
    expectFired("on the left", {"2.restTap.left"}, [](auto& p) { restThenTap(p, 0.4, 0.25); });
    expectFired("once per session", {"2.restTap.right"},
                [](auto& p) { restThenTap(p, 0.4, 0.55).liftAll().at(0.8); });
    expectFired("both lift together", {"2.restTap.right"},
                [](auto& p) { restAndLand(p, 0.2).liftAll().at(0.3); });
    expectFired("the rest lifted first", {},
                [](auto& p) { restAndLand(p, 0.2).lift(1).at(0.25).liftAll().at(0.3); });
    expectRejected("same x", rejected + "tap 0.000 from the resting finger",
                   [](auto& p) { restThenTap(p, 0.4, 0.4); });
    expectRejected("below the least gap", rejected + "tap 0.023 from the resting finger",
                   [](auto& p) { restThenTap(p, 0.25, 0.2734375); });
    expectFired("exactly the least gap", {"2.restTap.right"}, [](auto& p) { restThenTap(p, 0.0, 0.03); });
    expectRejected("exactly the largest distance", rejected + "tap 0.300 from the resting finger (max 0.3)",
                   [](auto& p) { restThenTap(p, 0.0, 0.3); });
    expectRejected("tap held too long", rejected + "tap held 0.41 s",
                   [](auto& p) { restAndLand(p, 0.2).lift(2).at(0.6125); });
    expectFired("tap held exactly the limit", {"2.restTap.right"},
                [](auto& p) { restAndLand(p, 0.25).lift(2).at(0.65); });
    expectRejected("tap moved", rejected + "tap moved 0.070",
                   [](auto& p) { restAndLand(p, 0.2).moveBy(2, 0, 0.07).at(0.25).lift(2).at(0.3); });
    expectRejected("rest drifted", rejected + "rest drifted 0.125",
                   [](auto& p) { restAndLand(p, 0.2).moveBy(1, 0, 0.125).at(0.25).lift(2).at(0.3); });
    expectRejected("rest held too briefly", rejected + "rest held 0.125 s before the tap (min 0.15)",
                   [](auto& p) { restAndLand(p, 0.125).lift(2).at(0.2); });
}

TEST(RestTaps, BesideTwoRestingFingers) {
    const std::string rejected = "rest+tap (3 fingers) rejected: ";
    expectFired("left", {"3.restTap.left"}, [](auto& p) { twoRestsThenTap(p, 0.2); });
    expectFired("right", {"3.restTap.right"}, [](auto& p) { twoRestsThenTap(p, 0.8); });
    expectFired("between", {"3.restTap.between"}, [](auto& p) { twoRestsThenTap(p, 0.5); });
    expectFired("on the left rest's x", {"3.restTap.between"}, [](auto& p) { twoRestsThenTap(p, 0.3); });
    expectFired("on the right rest's x", {"3.restTap.between"}, [](auto& p) { twoRestsThenTap(p, 0.7); });
    expectRejected("resting fingers slid together", rejected + "resting fingers slid together", [](auto& p) {
        p.land(1, 0.3, 0.5).land(2, 0.5, 0.5).at(0.0).land(3, 0.7, 0.45).at(0.2);
        p.moveBy(1, 0.04, 0).moveBy(2, 0.04, 0).at(0.25).lift(3).at(0.3);
    });
    expectRejected("after a two-finger scroll", rejected + "two fingers scrolled earlier this session",
                   [](auto& p) {
                       p.land(1, 0.3, 0.3).land(2, 0.5, 0.3).at(0.0).moveAllBy(0, 0.125).at(0.1);
                       p.land(3, 0.7, 0.45).at(0.4).lift(3).at(0.5);
                   });
    expectFired("after sliding exactly the scroll limit", {"3.restTap.right"}, [](auto& p) {
        p.land(1, 0.3, 0.0).land(2, 0.5, 0.0).at(0.0).moveAllBy(0, 0.12).at(0.1);
        p.land(3, 0.7, 0.1).at(0.4).lift(3).at(0.5);
    });
}

}  // namespace
}  // namespace ostrelle::testing
