#include "gestures/custom_shape.h"

#include <utility>

namespace ostrelle {

CustomShape::CustomShape(std::string name_, int fingers_, std::vector<Point> path_,
                         std::vector<Stroke> strokes_)
    : name(std::move(name_)), fingers(fingers_), path(std::move(path_)), strokes(std::move(strokes_)) {}

bool CustomShape::isValid() const {
    if (fingers < 3 || fingers > 5) return false;
    if (path.size() != templatePoints || strokes.empty()) return false;
    const auto first = name.find_first_not_of(" \t\n\r\v\f");
    return first != std::string::npos;
}

std::size_t hashOf(const CustomShape& shape) {
    std::size_t seed = std::hash<std::string>{}(shape.name);
    hashCombine(seed, std::hash<int>{}(shape.fingers));
    for (Point p : shape.path) hashCombine(seed, hashOf(p));
    for (const Stroke& stroke : shape.strokes) {
        hashCombine(seed, stroke.size());
        for (Point p : stroke) hashCombine(seed, hashOf(p));
    }
    return seed;
}

}  // namespace ostrelle
