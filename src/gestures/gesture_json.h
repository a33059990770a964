#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "gestures/gesture.h"
#include "recognition/custom_shape.h"
#include "support/json_error.h"
#include "support/point.h"

namespace ostrelle {

// JSON coding of gestures and their drawn shapes, as the bindings file stores them.
//
// A gesture without shape is its bare id string; one with a shape is {"id", "custom"}.
// A shape is {"name", "fingers", "path": [[x, y], ...], "strokes": [[[x, y], ...], ...]}.
//
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
    object["name"] = shape.name;
    object["fingers"] = shape.fingers;
    object["path"] = encodePoints<Json>(shape.path);
    object["strokes"] = std::move(strokes);
    return object;
}

template <class Json>
Json encodeGesture(const Gesture& gesture) {
    if (!gesture.custom) return Json(gesture.id);
    Json object = Json::object();
    object["id"] = gesture.id;
    object["custom"] = encodeShape<Json>(*gesture.custom);
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
