// Custom shapes built from a simulated drawing, and the shapes file that carries them.
#include "drawn_shape.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "gestures/gesture_json.h"
#include "takes.h"
#include "recognition/shape_matching.h"

namespace ostrelle::testing {
namespace {

using examples::Performer;

constexpr const char* fixedUUID = "5A3C9E1F-7B2D-4E68-A1F0-C4D2B6E8F013";

RecordedFrame frame(double time, std::vector<Contact> contacts) {
    return {time, std::move(contacts)};
}

TEST(DrawnShape, FollowsTheHandCentreOnlyWhileEveryFingerIsDown) {
    std::vector<RecordedFrame> frames{
        // Two fingers far off to the left before the third lands: not part of the drawing.
        frame(1.0, {{1, 0.0, 0.9}, {2, 0.02, 0.9}}),
    };
    for (int step = 0; step <= 30; ++step) {
        const double x = 0.3 + 0.01 * step;
        frames.push_back(frame(1.01 + 0.008 * step, {{1, x - 0.05, 0.5}, {2, x, 0.48}, {3, x + 0.05, 0.5}}));
    }
    frames.push_back(frame(1.3, {}));
    const CustomShape shape = examples::shapeFromFrames(3, frames);
    EXPECT_EQ(shape.fingers, 3);
    ASSERT_EQ(shape.path.size(), CustomShape::templatePoints);
    EXPECT_EQ(shape.strokes.size(), 3u);
    // A straight stroke to the right, centred: from the left edge of the template to the right one.
    EXPECT_NEAR(shape.path.front().x, -0.5, 1e-3);
    EXPECT_NEAR(shape.path.back().x, 0.5, 1e-3);
    EXPECT_NEAR(shape.path.front().y, shape.path.back().y, 1e-3);
}

TEST(DrawnShape, RefusesADrawingTooSmallToMatch) {
    std::vector<RecordedFrame> frames;
    for (int step = 0; step < 10; ++step) {
        frames.push_back(frame(0.008 * step, {{1, 0.4 + 0.01 * step, 0.5}, {2, 0.5, 0.5}, {3, 0.6, 0.5}}));
    }
    EXPECT_THROW(examples::shapeFromFrames(3, frames), std::logic_error);
}

TEST(DrawnShape, SameFigureDrawnElsewhereMatchesAStraightStrokeDoesNot) {
    const std::vector<Point> big{{0.3, 0.3}, {0.6, 0.3}, {0.3, 0.54}, {0.6, 0.54}};
    const std::vector<Point> small{{0.45, 0.4}, {0.65, 0.4}, {0.45, 0.56}, {0.65, 0.56}};
    Performer first(1);
    const CustomShape shape =
        examples::shapeFromFrames(3, first.sample(examples::drawing(first, 3, big, 0.9)));
    Performer second(2);
    const CustomShape again =
        examples::shapeFromFrames(3, second.sample(examples::drawing(second, 3, small, 0.9)));
    Performer third(3);
    const CustomShape line = examples::shapeFromFrames(
        3, third.sample(examples::drawing(third, 3, {{0.3, 0.5}, {0.7, 0.5}}, 0.9)));
    EXPECT_LT(shapes::distance(shape, again.path), shapes::maxDistance);
    EXPECT_GT(shapes::distance(shape, line.path), shapes::maxDistance);
}

TEST(DrawnShape, GestureKeepsItsFixedIDAndName) {
    Performer performer(4);
    const CustomShape shape = examples::shapeFromFrames(
        3, performer.sample(examples::drawing(performer, 3, {{0.3, 0.3}, {0.6, 0.3}, {0.6, 0.6}}, 0.9)));
    const Gesture gesture = examples::customGesture(shape, "Ell", fixedUUID);
    EXPECT_EQ(gesture.id, std::string("3.custom.") + fixedUUID);
    ASSERT_TRUE(gesture.custom.has_value());
    EXPECT_EQ(gesture.custom->name, "Ell");
    EXPECT_EQ(gesture.displayName(), "Ell");
}

TEST(DrawnShape, ShapesFileReadsBackAsTheSameGestures) {
    Performer performer(5);
    const CustomShape shape = examples::shapeFromFrames(
        4, performer.sample(examples::drawing(performer, 4, {{0.3, 0.3}, {0.6, 0.3}, {0.45, 0.6}}, 0.9)));
    const std::vector<Gesture> gestures{examples::customGesture(shape, "Say \"hi\"", fixedUUID)};
    const auto file = nlohmann::json::parse(examples::shapesFileText(gestures));
    ASSERT_TRUE(file.is_array());
    ASSERT_EQ(file.size(), 1u);
    EXPECT_EQ(decodeGesture(file[0]), gestures[0]);
    EXPECT_THROW(examples::shapesFileText({Gesture("3.tap")}), std::logic_error);
}

}  // namespace
}  // namespace ostrelle::testing
