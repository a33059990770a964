// Custom shapes at session end, and swipes deferred while a shape may still be meant.
#include <gtest/gtest.h>

#include "recognition/touch_pad.h"
#include "recognition/shape_matching.h"

namespace ostrelle::testing {
namespace {

constexpr double frame = 0.008;

// Moves all three fingers in `steps` equal steps, one frame each, starting after time t.
double glide(TouchPad& pad, double t, double dx, double dy, int steps) {
    for (int i = 0; i < steps; ++i) pad.moveAllBy(dx / steps, dy / steps).at(t += frame);
    return t;
}

TouchPad& landThree(TouchPad& pad) { return pad.land(1, 0.3, 0.2).land(2, 0.4, 0.15).land(3, 0.5, 0.2).at(0.0); }

// An "L": down, then right.
double drawL(TouchPad& pad, double size = 0.25) {
    landThree(pad);
    double t = glide(pad, 0.0, 0, size, 25);
    return glide(pad, t, size, 0, 25);
}

void finish(TouchPad& pad, double t) { pad.liftAll().at(t + frame); }

Gesture shapeGesture(const std::string& name, int fingers, std::vector<Point> drawing) {
    CustomShape shape = shapes::fromDrawing(fingers, drawing, {drawing});
    shape.name = name;
    return Gesture::newCustom(shape);
}

Gesture lShape(const std::string& name = "L", int fingers = 3) {
    return shapeGesture(name, fingers, {{0, 0}, {0, 1}, {1, 1}});
}
Gesture vShape() { return shapeGesture("V", 3, {{0, 0}, {0.5, 1}, {1, 0}}); }

TEST(CustomShapes, ADrawnShapeMatchesItsTemplate) {
    TouchPad pad;
    pad.recognizer.customs = {vShape(), lShape()};
    finish(pad, drawL(pad));
    ASSERT_TRUE(pad.last().has_value());
    EXPECT_EQ(pad.last()->id, pad.recognizer.customs[1].id);
    EXPECT_TRUE(pad.last()->custom.has_value());
}

TEST(CustomShapes, OnATieTheEarlierShapeWins) {
    TouchPad pad;
    pad.recognizer.customs = {lShape("first"), lShape("second")};
    finish(pad, drawL(pad));
    ASSERT_TRUE(pad.last().has_value());
    EXPECT_EQ(pad.last()->custom->name, "first");
}

TEST(CustomShapes, OnlyShapesOfTheSameFingerCountAreCandidates) {
    TouchPad pad;
    pad.recognizer.customs = {lShape("four", 4)};
    finish(pad, drawL(pad));
    // Nothing defers the L's opening downward stroke, so it fires as a swipe at once.
    EXPECT_EQ(pad.fired(), Ids{"3.swipe.down"});
}

TEST(CustomShapes, AShapeWithoutAFullTemplateNeverMatches) {
    Gesture broken = lShape();
    broken.custom->path.pop_back();
    TouchPad pad;
    pad.recognizer.customs = {broken};
    finish(pad, drawL(pad));
    EXPECT_TRUE(pad.fired().empty());
}

TEST(CustomShapes, RecordingTurnsTheDrawingIntoANewShape) {
    TouchPad pad;
    pad.recognizer.recordingShapes = true;
    finish(pad, drawL(pad));
    ASSERT_TRUE(pad.last().has_value());
    const Gesture& recorded = *pad.last();
    EXPECT_EQ(recorded.id.rfind("3.custom.", 0), 0U);
    ASSERT_TRUE(recorded.custom.has_value());
    EXPECT_EQ(recorded.custom->fingers, 3);
    EXPECT_EQ(recorded.custom->path.size(), CustomShape::templatePoints);
    ASSERT_EQ(recorded.custom->strokes.size(), 3U);
    EXPECT_EQ(recorded.custom->strokes[0].size(), CustomShape::strokePoints);
    EXPECT_LT(shapes::distance(*recorded.custom, lShape().custom->path), shapes::maxDistance);
}

TEST(CustomShapes, APathShorterThanTheMinimumIsNeitherMatchedNorRecorded) {
    TouchPad pad;
    pad.recognizer.customs = {lShape()};
    pad.recognizer.recordingShapes = true;
    finish(pad, drawL(pad, 0.095));
    EXPECT_TRUE(pad.fired().empty());
}

TEST(DeferredSwipes, WaitForTheSessionEndWhileAShapeCouldBeMeant) {
    TouchPad pad;
    pad.recognizer.customs = {lShape()};
    landThree(pad);
    const double t = glide(pad, 0.0, 0.25, 0, 10);
    EXPECT_TRUE(pad.fired().empty());
    EXPECT_FALSE(pad.recognizer.consumed());
    pad.liftAll().at(t + frame);
    EXPECT_EQ(pad.fired(), Ids{"3.swipe.right"});
}

TEST(DeferredSwipes, WaitWhileTheEditorRecords) {
    TouchPad pad;
    pad.recognizer.recordingShapes = true;
    landThree(pad);
    const double t = glide(pad, 0.0, 0, -0.15, 10);
    EXPECT_TRUE(pad.fired().empty());
    pad.liftAll().at(t + frame);
    EXPECT_EQ(pad.fired(), Ids{"3.swipe.up"});
}

TEST(DeferredSwipes, ShapesOfOtherFingerCountsDoNotDefer) {
    TouchPad pad;
    pad.recognizer.customs = {lShape("four", 4)};
    landThree(pad);
    glide(pad, 0.0, 0.25, 0, 10);
    EXPECT_EQ(pad.fired(), Ids{"3.swipe.right"});
}

TEST(DeferredSwipes, ACurvedPathDropsTheSwipe) {
    TouchPad pad;
    pad.recognizer.customs = {vShape()};
    landThree(pad);
    double t = glide(pad, 0.0, -0.2, 0, 10);
    t = glide(pad, t, 0, -0.1, 10);
    pad.liftAll().at(t + frame);
    EXPECT_TRUE(pad.fired().empty());
}

TEST(DeferredSwipes, AStraightPathTheOtherWayDropsTheSwipe) {
    TouchPad pad;
    pad.recognizer.customs = {vShape()};
    landThree(pad);
    double t = glide(pad, 0.0, 0.125, 0, 5);  // deferred as a right swipe
    t = glide(pad, t, -0.5, 0, 20);           // then back the other way, further
    pad.liftAll().at(t + frame);
    EXPECT_TRUE(pad.fired().empty());
}

}  // namespace
}  // namespace ostrelle::testing
