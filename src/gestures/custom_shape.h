#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "support/point.h"

namespace ostrelle {

using Stroke = std::vector<Point>;

// A figure the user drew with three to five fingers, kept as a size- and position-free template
// of the hand path plus the finger strokes (for drawing the shape back to the user). How a
// drawing becomes a template and how templates are compared is the recognizer's business.
struct CustomShape {
    static constexpr std::size_t templatePoints = 32;  // points in a template
    static constexpr std::size_t strokePoints = 48;    // points in a stored stroke

    std::string name;  // the only field the editor changes
    int fingers = 0;
    std::vector<Point> path;      // the template: templatePoints points, rounded to three decimals
    std::vector<Stroke> strokes;  // finger trails, strokePoints points each, rounded to three decimals

    CustomShape() = default;
    CustomShape(std::string name, int fingers, std::vector<Point> path, std::vector<Stroke> strokes);

    bool isValid() const;

    // Names and hints are built from the finger count: a count no hand has is not a shape.
    static constexpr bool isHandFingerCount(int fingers) { return fingers >= 1 && fingers <= 5; }

    friend bool operator==(const CustomShape&, const CustomShape&) = default;
};

std::size_t hashOf(const CustomShape& shape);

}  // namespace ostrelle

template <>
struct std::hash<ostrelle::CustomShape> {
    std::size_t operator()(const ostrelle::CustomShape& shape) const noexcept {
        return ostrelle::hashOf(shape);
    }
};
