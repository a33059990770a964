// Custom shape templates: resampling, normalization, distance, straightness and validity.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "recognition/shape_matching.h"

namespace ostrelle {
namespace {

TEST(Resample, EvenlySpacedAlongThePolyline) {
    const auto points = shapes::resample({{0, 0}, {1, 0}, {1, 1}}, 5);
    ASSERT_EQ(points.size(), 5U);
    EXPECT_EQ(points[0], (Point{0, 0}));
    EXPECT_EQ(points[1], (Point{0.5, 0}));
    EXPECT_EQ(points[2], (Point{1, 0}));
    EXPECT_EQ(points[3], (Point{1, 0.5}));
    EXPECT_EQ(points[4], (Point{1, 1}));
}

TEST(Resample, SeveralPointsOnOneLongSegment) {
    const auto points = shapes::resample({{0, 0}, {0.125, 0}, {1, 0}}, 9);
    ASSERT_EQ(points.size(), 9U);
    for (std::size_t i = 0; i < points.size(); ++i) EXPECT_DOUBLE_EQ(points[i].x, 0.125 * static_cast<double>(i));
}

TEST(Resample, DegenerateInputs) {
    EXPECT_TRUE(shapes::resample({}, 32).empty());
    const auto still = shapes::resample({{0.3, 0.4}, {0.3, 0.4}}, 32);
    ASSERT_EQ(still.size(), 32U);
    for (Point p : still) EXPECT_EQ(p, (Point{0.3, 0.4}));
    EXPECT_EQ(shapes::resample({{0.3, 0.4}}, 4).size(), 4U);
}

TEST(Resample, AlwaysEndsWithTheRequestedCountEvenWhenRoundingFallsShort) {
    // Thirds of a unit do not add up exactly in binary; the last point is padded in.
    const auto points = shapes::resample({{0, 0}, {0.1, 0}, {0.2, 0}, {0.3, 0}, {0.7, 0}, {1, 0}}, 31);
    ASSERT_EQ(points.size(), 31U);
    EXPECT_NEAR(points.back().x, 1.0, 1e-12);
}

TEST(Length, SumsSegments) {
    EXPECT_EQ(shapes::length({}), 0.0);
    EXPECT_EQ(shapes::length({{1, 1}}), 0.0);
    EXPECT_EQ(shapes::length({{0, 0}, {3, 4}, {3, 5}}), 6.0);
}

TEST(Template, CentredAndScaledKeepingTheAspectRatio) {
    const auto t = shapes::templateOf({{10, 10}, {12, 10}, {12, 11}});
    ASSERT_EQ(t.size(), CustomShape::templatePoints);
    double minX = 1e9, maxX = -1e9, minY = 1e9, maxY = -1e9, sumX = 0, sumY = 0;
    for (Point p : t) {
        minX = std::min(minX, p.x), maxX = std::max(maxX, p.x), minY = std::min(minY, p.y), maxY = std::max(maxY, p.y);
        sumX += p.x, sumY += p.y;
    }
    EXPECT_NEAR(maxX - minX, 1.0, 1e-12);  // the wider side becomes 1
    EXPECT_NEAR(maxY - minY, 0.5, 1e-12);  // the other keeps its proportion
    EXPECT_NEAR(sumX, 0.0, 1e-9);
    EXPECT_NEAR(sumY, 0.0, 1e-9);
}

TEST(Template, APureDotNormalizesToTheOrigin) {
    const auto t = shapes::templateOf(std::vector<Point>(5, Point{0.4, 0.6}));
    ASSERT_EQ(t.size(), 32U);
    for (Point p : t) EXPECT_EQ(p, (Point{0, 0}));
    EXPECT_TRUE(shapes::templateOf({}).empty());
}

TEST(Template, SizeAndPositionDoNotMatter) {
    const auto small = shapes::templateOf({{0.1, 0.1}, {0.1, 0.2}, {0.2, 0.2}});
    const auto large = shapes::templateOf({{0.3, 0.3}, {0.3, 0.9}, {0.9, 0.9}});
    const CustomShape shape("L", 3, small, {});
    EXPECT_LT(shapes::distance(shape, large), 1e-9);
}

TEST(Distance, MeanPointDistanceAndInfiniteForOtherCounts) {
    const CustomShape shape("", 3, {{0, 0}, {1, 0}}, {});
    EXPECT_EQ(shapes::distance(shape, {{0, 1}, {1, 3}}), 2.0);
    EXPECT_EQ(shapes::distance(shape, {{0, 0}}), std::numeric_limits<double>::infinity());
    EXPECT_EQ(shapes::distance(CustomShape(), {}), std::numeric_limits<double>::infinity());
}

TEST(Distance, NoReversalIsTried) {
    const auto forward = shapes::templateOf({{0, 0}, {1, 0}, {1, 1}});
    const auto backward = shapes::templateOf({{1, 1}, {1, 0}, {0, 0}});
    EXPECT_GT(shapes::distance(CustomShape("", 3, forward, {}), backward), shapes::maxDistance);
}

TEST(Straightness, DeviationUpToAQuarterOfTheChord) {
    EXPECT_TRUE(shapes::isStraight({{0, 0}, {0.5, 0.25}, {1, 0}}));
    EXPECT_FALSE(shapes::isStraight({{0, 0}, {0.5, 0.2500001}, {1, 0}}));
    EXPECT_TRUE(shapes::isStraight({{0, 0}, {0.5, -0.25}, {1, 0}}));
}

TEST(Straightness, DegeneratePathsAreNotStraight) {
    EXPECT_FALSE(shapes::isStraight({}));
    EXPECT_FALSE(shapes::isStraight({{0.2, 0.2}}));
    EXPECT_FALSE(shapes::isStraight({{0.2, 0.2}, {0.5, 0.5}, {0.2, 0.2}}));  // a closed loop has no chord
}

TEST(FromDrawing, TemplateAndStrokesRoundedToThreeDecimals) {
    const std::vector<Point> drawing{{0.1, 0.1}, {0.1, 0.4}, {0.37, 0.4}};
    const CustomShape shape = shapes::fromDrawing(3, drawing, {drawing, {{0.2, 0.1}, {0.2, 0.4}}});
    EXPECT_EQ(shape.name, "");
    EXPECT_EQ(shape.fingers, 3);
    ASSERT_EQ(shape.path.size(), 32U);
    ASSERT_EQ(shape.strokes.size(), 2U);
    for (const Stroke& stroke : shape.strokes) ASSERT_EQ(stroke.size(), 48U);
    auto isRounded = [](double v) { return std::round(v * 1000) / 1000 == v; };
    for (Point p : shape.path) EXPECT_TRUE(isRounded(p.x) && isRounded(p.y)) << p.x << "," << p.y;
    for (Point p : shape.strokes[1]) EXPECT_TRUE(isRounded(p.x) && isRounded(p.y)) << p.x << "," << p.y;
}

TEST(Validity, NeedsFingersThirtyTwoPointsStrokesAndAName) {
    CustomShape shape = shapes::fromDrawing(4, {{0, 0}, {1, 1}}, {{{0, 0}, {1, 1}}});
    EXPECT_FALSE(shape.isValid());  // no name yet
    shape.name = " \t ";
    EXPECT_FALSE(shape.isValid());
    shape.name = "Slash";
    EXPECT_TRUE(shape.isValid());
    CustomShape noStrokes = shape;
    noStrokes.strokes.clear();
    EXPECT_FALSE(noStrokes.isValid());
    CustomShape twoFingers = shape;
    twoFingers.fingers = 2;
    EXPECT_FALSE(twoFingers.isValid());
    CustomShape shortPath = shape;
    shortPath.path.pop_back();
    EXPECT_FALSE(shortPath.isValid());
}

}  // namespace
}  // namespace ostrelle
