// Sessions: dropouts, stray contacts, re-landing fingers, and the hand path.
#include <cmath>

#include "recognition/touch_pad.h"

namespace ostrelle::testing {
namespace {

TEST(Sessions, Dropouts) {
    const Ids twice{"3.swipe.right", "3.swipe.right"};
    // The hardware lost every finger for a frame or two, and the fingers come back.
    expectFired("a fired session resumes and fires no swipe", {"3.tap"}, [](auto& p) {
        p.hand(3).at(0.0).liftAll().at(0.1).at(0.105);
        p.hand(3).at(0.11).moveAllBy(0.2, 0).at(0.15).at(0.2).liftAll().at(0.3);
    });
    expectFired("a fired session resumes and does not tap again", {"3.tap"},
                [](auto& p) { p.hand(3).at(0.0).liftAll().at(0.1).hand(3).at(0.11).liftAll().at(0.15); });
    expectFired("a consumed session stays consumed", {"3.swipe.right"}, [](auto& p) {
        p.hand(3).at(0.0).moveAllBy(0.125, 0).at(0.05).liftAll().at(0.1);
        p.hand(3).moveAllBy(0.125, 0).at(0.114).moveAllBy(0.2, 0).at(0.15).liftAll().at(0.2);
    });
    expectFired("a gap of exactly the window", twice, [](auto& p) {
        p.hand(3).at(-0.1).moveAllBy(0.125, 0).at(-0.05).liftAll().at(0.0);
        p.hand(3).at(0.015).moveAllBy(0.125, 0).at(0.05);
    });
    expectFired("new fingers start a new session", twice, [](auto& p) {
        p.hand(3).at(0.0).moveAllBy(0.125, 0).at(0.05).liftAll().at(0.1);
        p.land(7, 0.4, 0.5).land(8, 0.5, 0.5).land(9, 0.6, 0.5).at(0.105).moveAllBy(0.125, 0).at(0.15);
    });
}

TEST(Sessions, StraysAndReturningFingers) {
    // Left out for the rest of the session: lifting the others ends it.
    expectFired("a far late contact is a stray", {"3.tap"}, [](auto& p) {
        p.hand(3).at(0.0).land(4, 0.95, 0.9).at(0.2).lift(1).lift(2).lift(3).at(0.24);
    });
    expectFired("a far contact landing with the others is not", {"4.tap"},
                [](auto& p) { p.hand(3).at(0.0).land(4, 0.95, 0.9).at(0.08).liftAll().at(0.2); });
    expectRejected(
        "two equal groups have no strays", "4-finger tap rejected: landed 0.200 s apart", [](auto& p) {
            p.land(1, 0.1, 0.5).land(2, 0.2, 0.5).at(0.0).land(3, 0.8, 0.5).land(4, 0.9, 0.5).at(0.2);
            p.liftAll().at(0.25);
        });
    // Each is within reach of the next, so all four form one group although the ends are far apart.
    expectRejected("contacts chain through neighbours", "4-finger tap rejected: held 0.55 s", [](auto& p) {
        p.land(1, 0.1, 0.5).land(2, 0.35, 0.5).land(3, 0.6, 0.5).at(0.0).land(4, 0.85, 0.5).at(0.5);
        p.liftAll().at(0.55);
    });
    // Its second touch is a rest tap of its own.
    expectFired("a finger landing again under its id", {"2.restTap.right"}, [](auto& p) {
        p.land(1, 0.4, 0.5).land(2, 0.6, 0.5).at(0.0).lift(2).at(0.1);
        p.land(2, 0.6, 0.5).at(0.3).lift(2).at(0.4);
    });
}

// The hand path's point count and the sizes of the finger strokes after a script.
void expectPath(const char* name, std::size_t points, const std::vector<std::size_t>& strokes,
                const std::function<void(TouchPad&)>& play) {
    SCOPED_TRACE(name);
    TouchPad pad;
    play(pad);
    EXPECT_EQ(pad.recognizer.pathCount(), points);
    std::vector<std::size_t> sizes;
    for (const Stroke& stroke : pad.recognizer.liveStrokes()) sizes.push_back(stroke.size());
    EXPECT_EQ(sizes, strokes);
}

TEST(HandPath, GrowsByStepsForOneFingerCountUpToTheCap) {
    expectPath("steps below the path step add no point", 2, {2, 2, 2},
               [](auto& p) { p.hand(3).at(0.0).moveAllBy(0.003, 0).at(0.01).moveAllBy(0.003, 0).at(0.02); });
    expectPath("another finger landing restarts it", 1, {1, 1, 1, 1}, [](auto& p) {
        p.hand(3).at(0.0).moveAllBy(0.01, 0).at(0.01).moveAllBy(0.01, 0).at(0.02);
        p.land(4, 0.7, 0.5).at(0.03);
    });
    expectPath("not while fewer fingers are down", 1, {1, 1, 1},
               [](auto& p) { p.hand(3).at(0.0).lift(3).at(0.01).moveAllBy(0.1, 0).at(0.02); });
    // Circling slowly: the centroid keeps moving but no swipe ever fires.
    expectPath("capped", 1024, {1024, 1024, 1024}, [](auto& p) {
        p.hand(3).at(0.0);
        for (int i = 1; i <= 3000; ++i) {
            const double dx = 0.02 * std::cos(i * 0.2);
            const double dy = 0.02 * std::sin(i * 0.2);
            p.liftAll().hand(3, 0.3 + dx, 0.5 + dy).at(i * 0.008);
        }
    });
}

TEST(HandPath, LiveStrokesAreInAscendingFingerId) {
    TouchPad pad;
    pad.land(30, 0.6, 0.5).land(-4, 0.4, 0.5).land(7, 0.5, 0.5).at(0.0);
    EXPECT_EQ(pad.recognizer.liveStrokes(), (std::vector<Stroke>{{{0.4, 0.5}}, {{0.5, 0.5}}, {{0.6, 0.5}}}));
}

}  // namespace
}  // namespace ostrelle::testing
