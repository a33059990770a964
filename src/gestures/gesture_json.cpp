#include "gestures/gesture_json.h"

#include <cmath>
#include <optional>

#include "gestures/motion.h"
#include "support/json_read.h"

namespace ostrelle {
namespace {

using namespace json_read;

Point decodePoint(const nlohmann::json& value, const std::string& path) {
    constexpr std::size_t coordinates = 2;
    if (!value.is_array() || value.size() != coordinates) throw JSONError(path, "expected a point [x, y]");
    return {finiteNumber(value[0], element(path, 0)), finiteNumber(value[1], element(path, 1))};
}

// A well-formed point read without composing its path: shapes hold thousands of points, and the
// path is only worth building for the error message.
std::optional<Point> plainPoint(const nlohmann::json& value) {
    if (!value.is_array() || value.size() != 2 || !value[0].is_number() || !value[1].is_number())
        return std::nullopt;
    const Point point{value[0].get<double>(), value[1].get<double>()};
    if (!std::isfinite(point.x) || !std::isfinite(point.y)) return std::nullopt;
    return point;
}

std::vector<Point> decodePoints(const nlohmann::json& value, const std::string& path) {
    if (!value.is_array()) throw JSONError(path, "expected an array of points");
    std::vector<Point> points;
    points.reserve(value.size());
    for (std::size_t i = 0; i < value.size(); ++i) {
        const std::optional<Point> point = plainPoint(value[i]);
        points.push_back(point ? *point : decodePoint(value[i], element(path, i)));
    }
    return points;
}

std::vector<Stroke> decodeStrokes(const nlohmann::json& value, const std::string& path) {
    if (!value.is_array()) throw JSONError(path, "expected an array of strokes");
    std::vector<Stroke> strokes;
    strokes.reserve(value.size());
    for (std::size_t i = 0; i < value.size(); ++i)
        strokes.push_back(decodePoints(value[i], element(path, i)));
    return strokes;
}

// The object form with a string "id"; nothing when the value does not have that form.
std::optional<Gesture> decodeWithID(const nlohmann::json& value, const std::string& path) {
    if (!value.is_object()) return std::nullopt;
    const auto id = value.find(gesture_keys::id);
    if (id == value.end() || !id->is_string()) return std::nullopt;
    Gesture gesture(id->get<std::string>());
    if (const auto custom = value.find(gesture_keys::custom); custom != value.end()) {
        // A damaged shape costs the user the drawing, not the binding: the gesture keeps its id.
        try {
            gesture.custom = decodeShape(*custom, member(path, gesture_keys::custom));
        } catch (const JSONError&) {
        }
    }
    return gesture;
}

// Files written before gestures had ids: {"fingers": 3, "motion": "swipe", "direction": "left"}.
Gesture decodeLegacy(const nlohmann::json& value, const std::string& path) {
    if (!value.is_object()) throw JSONError(path, "expected a gesture id string or an object");
    const int fingers = integer(required(value, "fingers", path), member(path, "fingers"));

    const std::string motionPath = member(path, "motion");
    const std::string& motionText = string(required(value, "motion", path), motionPath);
    const auto motion = motionFromRaw(motionText);
    if (!motion) throw JSONError(motionPath, "unknown motion \"" + motionText + "\"");

    std::optional<SwipeDirection> direction;
    if (value.contains("direction") && !value.at("direction").is_null()) {
        const std::string directionPath = member(path, "direction");
        const std::string& directionText = string(value.at("direction"), directionPath);
        direction = swipeDirectionFromRaw(directionText);
        if (!direction) throw JSONError(directionPath, "unknown direction \"" + directionText + "\"");
    }
    return Gesture(Gesture::genericID(fingers, *motion, direction));
}

}  // namespace

CustomShape decodeShape(const nlohmann::json& value, const std::string& path) {
    requireObject(value, path);
    CustomShape shape;
    const std::string fingersPath = member(path, shape_keys::fingers);
    shape.name = string(required(value, shape_keys::name, path), member(path, shape_keys::name));
    shape.fingers = integer(required(value, shape_keys::fingers, path), fingersPath);
    if (!CustomShape::isHandFingerCount(shape.fingers)) throw JSONError(fingersPath, "must be 1 to 5");
    shape.path = decodePoints(required(value, shape_keys::path, path), member(path, shape_keys::path));
    shape.strokes =
        decodeStrokes(required(value, shape_keys::strokes, path), member(path, shape_keys::strokes));
    return shape;
}

Gesture decodeGesture(const nlohmann::json& value, const std::string& path) {
    if (value.is_string()) return Gesture(value.get<std::string>());
    if (auto gesture = decodeWithID(value, path)) return std::move(*gesture);
    return decodeLegacy(value, path);
}

}  // namespace ostrelle
