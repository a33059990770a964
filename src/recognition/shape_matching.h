#pragma once

#include <cstddef>
#include <vector>

#include "gestures/custom_shape.h"

// How a drawn hand path becomes a shape template and how templates are compared.
namespace ostrelle::shapes {

constexpr double minLength = 0.2;              // units: least hand-path length to match or record
constexpr double maxDistance = 0.12;           // template units: a shape matches below this
constexpr double straightMaxDeviation = 0.25;  // ratio of the chord length

// A shape from a recorded hand path and the finger strokes of the same session; unnamed.
CustomShape fromDrawing(int fingers, const std::vector<Point>& handPath, const std::vector<Stroke>& strokes);

// Mean point-to-point distance between a shape's template and another; infinite when the point
// counts differ.
double distance(const CustomShape& shape, const std::vector<Point>& otherTemplate);

double length(const std::vector<Point>& points);
std::vector<Point> resample(const std::vector<Point>& points, std::size_t count);
std::vector<Point> templateOf(const std::vector<Point>& points);
bool isStraight(const std::vector<Point>& points);

}  // namespace ostrelle::shapes
