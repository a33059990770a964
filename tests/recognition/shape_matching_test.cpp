// Custom shape templates: resampling, normalization, distance, straightness and validity.
#include "recognition/shape_matching.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>

namespace ostrelle {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

// Points spaced `step` apart along the x axis from the origin.
void expectAlongX(const std::vector<Point>& points, std::size_t count, double step) {
    ASSERT_EQ(points.size(), count);
    for (std::size_t i = 0; i < count; ++i)
        EXPECT_NEAR(points[i].x, step * static_cast<double>(i), 1e-12) << i;
}

TEST(Resample, EvenlySpacedAlongThePolylineOfItsLengthAndPaddedToTheCount) {
    EXPECT_EQ(shapes::resample({{0, 0}, {1, 0}, {1, 1}}, 5),
              (std::vector<Point>{{0, 0}, {0.5, 0}, {1, 0}, {1, 0.5}, {1, 1}}));
    expectAlongX(shapes::resample({{0, 0}, {0.125, 0}, {1, 0}}, 9), 9, 0.125);
    // Thirtieths do not add up exactly in binary; the last point is padded in.
    expectAlongX(shapes::resample({{0, 0}, {0.1, 0}, {0.2, 0}, {0.3, 0}, {0.7, 0}, {1, 0}}, 31), 31,
                 1.0 / 30);
    EXPECT_EQ(shapes::resample({{0.3, 0.4}, {0.3, 0.4}}, 3), std::vector<Point>(3, {0.3, 0.4}));
    EXPECT_EQ(shapes::resample({{0.3, 0.4}}, 4), std::vector<Point>(4, {0.3, 0.4}));
    EXPECT_TRUE(shapes::resample({}, 32).empty());
    EXPECT_EQ(shapes::length({{1, 1}}), 0.0);
    EXPECT_EQ(shapes::length({{0, 0}, {3, 4}, {3, 5}}), 6.0);
}

TEST(Template, CentredAndScaledKeepingTheAspectRatio) {
    const auto t = shapes::templateOf({{10, 10}, {12, 10}, {12, 11}});
    ASSERT_EQ(t.size(), CustomShape::templatePoints);
    const auto [left, right] = std::ranges::minmax(t, {}, &Point::x);
    const auto [top, bottom] = std::ranges::minmax(t, {}, &Point::y);
    EXPECT_NEAR(right.x - left.x, 1.0, 1e-12);  // the wider side becomes 1
    EXPECT_NEAR(bottom.y - top.y, 0.5, 1e-12);  // the other keeps its proportion
    Point sum;
    for (Point p : t) sum = {sum.x + p.x, sum.y + p.y};
    EXPECT_NEAR(sum.x, 0.0, 1e-9);  // centred on the centroid
    EXPECT_NEAR(sum.y, 0.0, 1e-9);
    const auto large = shapes::templateOf({{30, 30}, {36, 30}, {36, 33}});
    EXPECT_LT(shapes::distance(CustomShape("", 3, t, {}), large), 1e-9);  // size and position do not matter
}

TEST(Template, APureDotNormalizesToTheOrigin) {
    EXPECT_EQ(shapes::templateOf(std::vector<Point>(5, Point{0.4, 0.6})),
              std::vector<Point>(32, Point{0, 0}));
    EXPECT_TRUE(shapes::templateOf({}).empty());
}

TEST(Distance, MeanPointDistanceInfiniteForOtherCountsNoReversal) {
    const CustomShape shape("", 3, {{0, 0}, {1, 0}}, {});
    EXPECT_EQ(shapes::distance(shape, {{0, 1}, {1, 3}}), 2.0);
    EXPECT_EQ(shapes::distance(shape, {{0, 0}}), infinity);
    EXPECT_EQ(shapes::distance(CustomShape(), {}), infinity);
    const auto forward = shapes::templateOf({{0, 0}, {1, 0}, {1, 1}});
    const auto backward = shapes::templateOf({{1, 1}, {1, 0}, {0, 0}});
    EXPECT_GT(shapes::distance(CustomShape("", 3, forward, {}), backward), shapes::maxDistance);
}

TEST(Straightness, DeviationUpToAQuarterOfTheChord) {
    EXPECT_TRUE(shapes::isStraight({{0, 0}, {0.5, 0.25}, {1, 0}}));
    EXPECT_TRUE(shapes::isStraight({{0, 0}, {0.5, -0.25}, {1, 0}}));
    EXPECT_FALSE(shapes::isStraight({{0, 0}, {0.5, 0.2500001}, {1, 0}}));
    EXPECT_FALSE(shapes::isStraight({}));
    EXPECT_FALSE(shapes::isStraight({{0.2, 0.2}}));
    EXPECT_FALSE(shapes::isStraight({{0.2, 0.2}, {0.5, 0.5}, {0.2, 0.2}}));  // a closed loop has no chord
}

TEST(FromDrawing, TemplateAndStrokesRoundedToThreeDecimals) {
    const std::vector<Point> drawing{{0.1, 0.1}, {0.1, 0.4}, {0.37, 0.4}};
    const CustomShape shape = shapes::fromDrawing(3, drawing, {drawing, {{0.2, 0.1}, {0.2, 0.4}}});
    ASSERT_EQ(shape.path.size(), 32U);
    ASSERT_EQ(shape.strokes.size(), 2U);
    for (const Stroke& stroke : shape.strokes) ASSERT_EQ(stroke.size(), 48U);
    auto isRounded = [](double v) { return std::round(v * 1000) / 1000 == v; };
    for (Point p : shape.path) EXPECT_TRUE(isRounded(p.x) && isRounded(p.y)) << p.x << "," << p.y;
    for (Point p : shape.strokes[1]) EXPECT_TRUE(isRounded(p.x) && isRounded(p.y)) << p.x << "," << p.y;
}

TEST(Validity, NeedsThreeToFiveFingersThirtyTwoPointsStrokesAndAName) {
    const CustomShape valid("Slash", 4, std::vector<Point>(32), {{{0, 0}, {1, 1}}});
    EXPECT_TRUE(valid.isValid());
    const std::pair<const char*, std::function<void(CustomShape&)>> faults[] = {
        {"no name", [](CustomShape& s) { s.name = ""; }},
        {"blank name", [](CustomShape& s) { s.name = " \t "; }},
        {"no strokes", [](CustomShape& s) { s.strokes.clear(); }},
        {"two fingers", [](CustomShape& s) { s.fingers = 2; }},
        {"six fingers", [](CustomShape& s) { s.fingers = 6; }},
        {"a point short", [](CustomShape& s) { s.path.pop_back(); }},
    };
    for (const auto& [name, spoil] : faults) {
        CustomShape shape = valid;
        spoil(shape);
        EXPECT_FALSE(shape.isValid()) << name;
    }
}

}  // namespace
}  // namespace ostrelle
