// Custom shapes at session end, and swipes deferred while a shape may still be meant.
#include "recognition/shape_matching.h"
#include "recognition/touch_pad.h"

namespace ostrelle::testing {
namespace {

constexpr double frame = 0.008;

// Moves all fingers in `steps` equal steps, one frame each, starting after time t.
double glide(TouchPad& pad, double t, double dx, double dy, int steps) {
    for (int i = 0; i < steps; ++i) pad.moveAllBy(dx / steps, dy / steps).at(t += frame);
    return t;
}

// An "L" drawn with n fingers: down, then right. Returns the time of the last frame.
double strokeL(TouchPad& pad, int fingers = 3, double size = 0.25) {
    pad.hand(fingers, 0.3, 0.2).at(0.0);
    return glide(pad, glide(pad, 0.0, 0, size, 25), size, 0, 25);
}
void drawL(TouchPad& pad, int fingers = 3, double size = 0.25) {
    const double t = strokeL(pad, fingers, size);
    pad.liftAll().at(t + frame);
}

const std::vector<Point> ell{{0, 0}, {0, 1}, {1, 1}};
const std::vector<Point> vee{{0, 0}, {0.5, 1}, {1, 0}};

Gesture shape(const std::string& name, int fingers, const std::vector<Point>& drawing) {
    CustomShape drawn = shapes::fromDrawing(fingers, drawing, {drawing});
    drawn.name = name;
    return Gesture::newCustom(drawn);
}

TEST(CustomShapes, MatchAtSessionEnd) {
    expectFired("the drawn shape's template", {"custom L"}, [](auto& p) {
        p.recognizer.customs = {shape("V", 3, vee), shape("L", 3, ell)};
        drawL(p);
    });
    expectFired("on a tie the earlier shape", {"custom first"}, [](auto& p) {
        p.recognizer.customs = {shape("first", 3, ell), shape("second", 3, ell)};
        drawL(p);
    });
    // The same path, but the only shape for four fingers is the V (which defers the swipe).
    expectFired("never a shape of another finger count", {}, [](auto& p) {
        p.recognizer.customs = {shape("L", 3, ell), shape("V", 4, vee)};
        drawL(p, 4);
    });
    // Nothing defers the L's opening downward stroke, so it fires as a swipe at once.
    expectFired("shapes of another finger count do not defer", {"3.swipe.down"}, [](auto& p) {
        p.recognizer.customs = {shape("four", 4, ell)};
        drawL(p);
    });
    expectFired("never a shape without a full template", {}, [](auto& p) {
        p.recognizer.customs = {shape("L", 3, ell)};
        p.recognizer.customs[0].custom->path.pop_back();
        drawL(p);
    });
    expectFired("a path shorter than the minimum is neither matched nor recorded", {}, [](auto& p) {
        p.recognizer.customs = {shape("L", 3, ell)};
        p.recognizer.recordingShapes = true;
        drawL(p, 3, 0.095);
    });
}

TEST(CustomShapes, RecordingTurnsTheDrawingIntoANewShape) {
    TouchPad pad;
    pad.recognizer.recordingShapes = true;
    const std::optional<Gesture> recorded = pad.recognizer.process({}, strokeL(pad) + frame);
    ASSERT_TRUE(recorded && recorded->custom);
    EXPECT_EQ(recorded->id.rfind("3.custom.", 0), 0U);
    EXPECT_EQ(recorded->custom->strokes.size(), 3U);
    EXPECT_LT(shapes::distance(*recorded->custom, shape("L", 3, ell).custom->path), shapes::maxDistance);
}

TEST(DeferredSwipes, FireAtSessionEndOnlyWhenThePathWasStraightTheSameWay) {
    expectFired("straight", {"3.swipe.right"}, [](auto& p) {
        p.recognizer.customs = {shape("L", 3, ell)};
        p.hand(3, 0.3, 0.2).at(0.0);
        const double t = glide(p, 0.0, 0.25, 0, 10);
        p.liftAll().at(t + frame);
    });
    expectFired("straight while the editor records", {"3.swipe.up"}, [](auto& p) {
        p.recognizer.recordingShapes = true;
        p.hand(3, 0.3, 0.2).at(0.0);
        const double t = glide(p, 0.0, 0, -0.15, 10);
        p.liftAll().at(t + frame);
    });
    expectFired("curved", {}, [](auto& p) {
        p.recognizer.customs = {shape("V", 3, vee)};
        p.hand(3, 0.3, 0.2).at(0.0);
        const double t = glide(p, glide(p, 0.0, -0.2, 0, 10), 0, -0.1, 10);
        p.liftAll().at(t + frame);
    });
    // Deferred as a right swipe, then back the other way, further.
    expectFired("straight the other way", {}, [](auto& p) {
        p.recognizer.customs = {shape("V", 3, vee)};
        p.hand(3, 0.3, 0.2).at(0.0);
        const double t = glide(p, glide(p, 0.0, 0.125, 0, 5), -0.5, 0, 20);
        p.liftAll().at(t + frame);
    });
}

}  // namespace
}  // namespace ostrelle::testing
