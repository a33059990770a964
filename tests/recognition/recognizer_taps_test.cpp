// Multi-finger taps, double taps and physical clicks.
#include "recognition/touch_pad.h"

namespace ostrelle::testing {
namespace {

TEST(Taps, Limits) {
    expectFired("held exactly the limit", {"3.tap"},
                [](auto& p) { p.hand(3).at(1.0).at(1.1).liftAll().at(1.25); });
    expectRejected("held past the limit", "3-finger tap rejected: held 0.25 s",
                   [](auto& p) { p.hand(3).at(1.0).liftAll().at(1.2501); });
    expectRejected("a finger moved the limit", "3-finger tap rejected: moved 0.030",
                   [](auto& p) { p.hand(3, 0.0).at(0.0).moveBy(1, 0.03, 0).at(0.05).liftAll().at(0.1); });
    expectFired("a finger moved a little less", {"3.tap"},
                [](auto& p) { p.hand(3).at(0.0).moveBy(1, 0.029, 0).at(0.05).liftAll().at(0.1); });
    // Four fingers, so the late finger cannot be read as a rest tap instead.
    expectRejected("landed the limit apart", "4-finger tap rejected: landed 0.150 s apart",
                   [](auto& p) { p.hand(3).at(0.0625).land(4, 0.54, 0.53).at(0.2125).liftAll().at(0.3125); });
    expectFired("lifted exactly the group window apart", {"3.tap"},
                [](auto& p) { p.hand(3).at(-0.1).lift(1).at(0.0).liftAll().at(0.08); });
    expectRejected("lifted further apart", "3-finger tap rejected: lifted 0.086 s apart",
                   [](auto& p) { p.hand(3).at(0.0).lift(1).at(0.125).liftAll().at(0.2109375); });
}

// A quick tap with n fingers at t.
void tap(TouchPad& pad, int fingers, double t) {
    pad.hand(fingers).at(t).liftAll().at(t + 0.1);
}

TEST(DoubleTaps, Window) {
    expectFired("second tap at the window's end", {"4.tap", "4.doubleTap"},
                [](auto& p) { p.hand(4).at(0.0).liftAll().at(0.125).hand(4).at(0.3).liftAll().at(0.475); });
    expectFired("second tap just past the window", {"4.tap", "4.tap"}, [](auto& p) {
        p.hand(4).at(0.0).liftAll().at(0.125).hand(4).at(0.3).liftAll().at(0.4750001);
    });
    expectFired("other finger count", {"3.tap", "4.tap"}, [](auto& p) {
        tap(p, 3, 0.0);
        tap(p, 4, 0.2);
    });
    // The third tap lifts exactly the window after the first.
    expectFired("a double tap disarms", {"4.tap", "4.doubleTap", "4.tap"}, [](auto& p) {
        for (double t : {0.0, 0.2, 0.35}) tap(p, 4, t);
    });
    // Three fingers have no double tap: every quick tap is a single tap that arms the next.
    expectFired("no double tap in the catalog", {"3.tap", "3.tap", "3.tap"}, [](auto& p) {
        for (double t : {0.0, 0.2, 0.4}) tap(p, 3, t);
    });
    expectFired("a rejected tap leaves the armed one", {"4.tap", "4.doubleTap"}, [](auto& p) {
        tap(p, 4, 0.0);
        p.hand(4).at(0.15).moveBy(1, 0.05, 0.0).at(0.17).liftAll().at(0.19);
        tap(p, 4, 0.3);
    });
}

TEST(Clicks, ThreeOrMoreFingersClickOncePerSession) {
    expectFired("three", {"3.click"}, [](auto& p) { p.hand(3).at(0.0).click().click().liftAll().at(0.1); });
    // Two fingers do nothing and leave the session open for a rest tap.
    expectFired("two", {"2.restTap.right"}, [](auto& p) {
        p.land(1, 0.4, 0.5).at(0.0).land(2, 0.55, 0.5).at(0.2).click().lift(2).at(0.3);
    });
}

TEST(Clicks, AnUnknownClickStillConsumesTheSession) {
    TouchPad pad;
    pad.hand(6).at(0.0).click();
    EXPECT_TRUE(pad.fired().empty());
    EXPECT_TRUE(pad.recognizer.consumed());
}

}  // namespace
}  // namespace ostrelle::testing
