#include "recognition/shape_matching.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace ostrelle::shapes {
namespace {

// A drawing with no extent is scaled by this instead of dividing by zero.
constexpr double minimumScale = 1e-9;

// Template arithmetic sums many segment lengths; the plain square root is accurate enough there
// and several times cheaper than hypot.
double segment(Point a, Point b) {
    const double dx = b.x - a.x;
    const double dy = b.y - a.y;
    return std::sqrt(dx * dx + dy * dy);
}

double roundTo3(double value) {
    return std::round(value * 1000.0) / 1000.0;
}

std::vector<Point> rounded(std::vector<Point> points) {
    for (Point& p : points) p = {roundTo3(p.x), roundTo3(p.y)};
    return points;
}

struct Bounds {
    double minX = std::numeric_limits<double>::infinity();
    double minY = std::numeric_limits<double>::infinity();
    double maxX = -std::numeric_limits<double>::infinity();
    double maxY = -std::numeric_limits<double>::infinity();

    void add(Point p) {
        minX = std::min(minX, p.x);
        minY = std::min(minY, p.y);
        maxX = std::max(maxX, p.x);
        maxY = std::max(maxY, p.y);
    }
    double scale() const {
        const double s = std::max(maxX - minX, maxY - minY);
        return s <= minimumScale ? minimumScale : s;
    }
};

// Averaged as offsets from the first point, so that a drawing with no extent has its centroid
// exactly on its points (summing many equal coordinates would round away from them).
Point centroidOf(const std::vector<Point>& points) {
    const Point origin = points.front();
    Point sum;
    for (Point p : points) {
        sum.x += p.x - origin.x;
        sum.y += p.y - origin.y;
    }
    const auto n = static_cast<double>(points.size());
    return {origin.x + sum.x / n, origin.y + sum.y / n};
}

// Strokes are only drawn, never matched: they are resampled, then moved and scaled together (one
// centroid, one scale for all of them) so the fingers keep their places relative to each other.
std::vector<Stroke> normalizedStrokes(const std::vector<Stroke>& strokes) {
    std::vector<Stroke> result;
    result.reserve(strokes.size());
    Bounds bounds;
    Point sum;
    std::size_t count = 0;
    for (const Stroke& stroke : strokes) {
        if (stroke.empty()) continue;
        result.push_back(resample(stroke, CustomShape::strokePoints));
        for (Point p : result.back()) {
            bounds.add(p);
            sum.x += p.x;
            sum.y += p.y;
            ++count;
        }
    }
    if (count == 0) return result;
    const Point centre{sum.x / static_cast<double>(count), sum.y / static_cast<double>(count)};
    const double scale = bounds.scale();
    for (Stroke& stroke : result) {
        for (Point& p : stroke) p = {roundTo3((p.x - centre.x) / scale), roundTo3((p.y - centre.y) / scale)};
    }
    return result;
}

}  // namespace

CustomShape fromDrawing(int fingers, const std::vector<Point>& handPath, const std::vector<Stroke>& strokes) {
    return CustomShape("", fingers, rounded(templateOf(handPath)), normalizedStrokes(strokes));
}

double distance(const CustomShape& shape, const std::vector<Point>& otherTemplate) {
    const std::vector<Point>& path = shape.path;
    if (path.size() != otherTemplate.size() || path.empty()) return std::numeric_limits<double>::infinity();
    double sum = 0;
    for (std::size_t i = 0; i < path.size(); ++i) sum += segment(path[i], otherTemplate[i]);
    return sum / static_cast<double>(path.size());
}

double length(const std::vector<Point>& points) {
    double total = 0;
    for (std::size_t i = 1; i < points.size(); ++i) total += segment(points[i - 1], points[i]);
    return total;
}

std::vector<Point> resample(const std::vector<Point>& points, std::size_t count) {
    std::vector<Point> result;
    if (points.empty() || count == 0) return result;
    result.reserve(count);
    const double total = length(points);
    if (!(total > 0)) {
        result.assign(count, points.front());
        return result;
    }
    const double interval = total / static_cast<double>(count - 1);
    result.push_back(points.front());
    double walked = 0;
    Point previous = points.front();
    std::size_t next = 1;
    while (next < points.size() && result.size() < count) {
        const Point current = points[next];
        const double step = segment(previous, current);
        if (walked + step >= interval) {
            const double t = (interval - walked) / step;
            const Point emitted{previous.x + t * (current.x - previous.x),
                                previous.y + t * (current.y - previous.y)};
            result.push_back(emitted);
            // The emitted point starts what is left of this segment.
            previous = emitted;
            walked = 0;
        } else {
            walked += step;
            previous = current;
            ++next;
        }
    }
    while (result.size() < count) result.push_back(points.back());
    return result;
}

std::vector<Point> templateOf(const std::vector<Point>& points) {
    std::vector<Point> result = resample(points, CustomShape::templatePoints);
    if (result.empty()) return result;
    const Point centre = centroidOf(result);
    Bounds bounds;
    for (Point p : result) bounds.add(p);
    // One scale for both axes keeps the drawing's aspect ratio; size and position are dropped.
    const double scale = bounds.scale();
    for (Point& p : result) p = {(p.x - centre.x) / scale, (p.y - centre.y) / scale};
    return result;
}

bool isStraight(const std::vector<Point>& points) {
    if (points.empty()) return false;
    const Point first = points.front();
    const double chordX = points.back().x - first.x;
    const double chordY = points.back().y - first.y;
    const double chord = std::hypot(chordX, chordY);
    if (!(chord > 0)) return false;
    const double limit = straightMaxDeviation * chord;
    return std::all_of(points.begin(), points.end(), [&](Point p) {
        const double cross = chordX * (p.y - first.y) - chordY * (p.x - first.x);
        return std::abs(cross) / chord <= limit;
    });
}

}  // namespace ostrelle::shapes
