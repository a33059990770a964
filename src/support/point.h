#pragma once

#include <cmath>
#include <functional>

namespace ostrelle {

// A 2-D point in whatever unit space the caller works in (normalized trackpad units for paths).
struct Point {
    double x = 0;
    double y = 0;

    friend bool operator==(const Point&, const Point&) = default;
};

inline double distance(Point a, Point b) {
    return std::hypot(a.x - b.x, a.y - b.y);
}

// Mixes one more hash into a running seed; the usual golden-ratio combine.
inline void hashCombine(std::size_t& seed, std::size_t value) {
    seed ^= value + 0x9e3779b97f4a7c15ULL + (seed << 6) + (seed >> 2);
}

inline std::size_t hashOf(Point p) {
    std::size_t seed = std::hash<double>{}(p.x);
    hashCombine(seed, std::hash<double>{}(p.y));
    return seed;
}

}  // namespace ostrelle
