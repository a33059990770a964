#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "gestures/custom_shape.h"
#include "gestures/gesture.h"
#include "support/json_error.h"
#include "support/point.h"

namespace ostrelle {

// JSON coding of gestures and their drawn shapes, as the bindings file stores them.
//
// A gesture without shape is its bare id string; one with a shape is {"id", "custom"}.
// A shape is {"name", "fingers", "path": [[x, y], ...], "strokes": [[[x, y], ...], ...]}.
//
// Member names of the stored forms, for writers that print them without building a tree.
namespace gesture_keys {
inline constexpr const char* id = "id";
inline constexpr const char* custom = "custom";
}  // namespace gesture_keys
namespace shape_keys {
inline constexpr const char* name = "name";
inline constexpr const char* fingers = "fingers";
inline constexpr const char* path = "path";
inline constexpr const char* strokes = "strokes";
}  // namespace shape_keys

// The encoders are templates so the same code fills a key-sorted nlohmann::json (the bindings
// file sorts its keys) and an insertion-ordered nlohmann::ordered_json (line output).

template <class Json>
Json encodePoints(const std::vector<Point>& points) {
    Json array = Json::array();
    for (const Point& p : points) array.push_back(Json::array({p.x, p.y}));
    return array;
}

template <class Json>
Json encodeShape(const CustomShape& shape) {
    Json strokes = Json::array();
    for (const Stroke& stroke : shape.strokes) strokes.push_back(encodePoints<Json>(stroke));
    Json object = Json::object();
    object[shape_keys::name] = shape.name;
    object[shape_keys::fingers] = shape.fingers;
    object[shape_keys::path] = encodePoints<Json>(shape.path);
    object[shape_keys::strokes] = std::move(strokes);
    return object;
}

template <class Json>
Json encodeGesture(const Gesture& gesture) {
    if (!gesture.custom) return Json(gesture.id);
    Json object = Json::object();
    object[gesture_keys::id] = gesture.id;
    object[gesture_keys::custom] = encodeShape<Json>(*gesture.custom);
    return object;
}

// Decoders throw JSONError whose message begins with the path of the bad value, built on the
// path given here ("gesture.custom.path[3]: expected a point [x, y]").
CustomShape decodeShape(const nlohmann::json& value, const std::string& path = "shape");

// Reads, in this order: a bare id string; an object with a string "id" (its "custom" kept when
// it reads as a shape, silently dropped otherwise); the legacy {"fingers", "motion", "direction"}.
// When all fail, the legacy reading's error is the gesture's error.
Gesture decodeGesture(const nlohmann::json& value, const std::string& path = "gesture");

// nlohmann hooks, so that `json j = gesture;` and `j.get<Gesture>()` work.
template <class Json>
void to_json(Json& json, const CustomShape& shape) {
    json = encodeShape<Json>(shape);
}
template <class Json>
void to_json(Json& json, const Gesture& gesture) {
    json = encodeGesture<Json>(gesture);
}
inline void from_json(const nlohmann::json& json, CustomShape& shape) {
    shape = decodeShape(json);
}
inline void from_json(const nlohmann::json& json, Gesture& gesture) {
    gesture = decodeGesture(json);
}

}  // namespace ostrelle
