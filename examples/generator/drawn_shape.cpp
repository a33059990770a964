#include "drawn_shape.h"

#include <fmt/format.h>

#include <map>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "recognition/gesture_recognizer.h"
#include "recognition/shape_matching.h"

namespace ostrelle::examples {

CustomShape shapeFromFrames(int fingers, const std::vector<RecordedFrame>& frames) {
    std::vector<Point> handPath;
    std::map<std::int64_t, Stroke> trails;
    for (const RecordedFrame& frame : frames) {
        if (static_cast<int>(frame.contacts.size()) != fingers) continue;
        Point centre;
        for (const Contact& c : frame.contacts) {
            centre.x += c.x / static_cast<double>(fingers);
            centre.y += c.y / static_cast<double>(fingers);
            trails[c.id].push_back({c.x, c.y});
        }
        if (handPath.empty() || distance(handPath.back(), centre) >= GestureRecognizer::pathStep) {
            handPath.push_back(centre);
        }
    }
    std::vector<Stroke> strokes;
    for (auto& [id, trail] : trails) strokes.push_back(std::move(trail));
    if (shapes::length(handPath) < shapes::minLength) throw std::logic_error("the drawing is too small");
    return shapes::fromDrawing(fingers, handPath, strokes);
}

Gesture customGesture(CustomShape shape, const std::string& name, const std::string& uuid) {
    shape.name = name;
    Gesture gesture = Gesture::newCustom(shape);
    // newCustom draws a fresh random UUID; the bundled files need the same one every time.
    gesture.id = fmt::format("{}.custom.{}", shape.fingers, uuid);
    return gesture;
}

namespace {

// Points stay on one line per path, so the file is short enough to read.
std::string pointsText(const std::vector<Point>& points) {
    std::string text;
    for (Point p : points) {
        if (!text.empty()) text += ", ";
        text += fmt::format("[{}, {}]", nlohmann::json(p.x).dump(), nlohmann::json(p.y).dump());
    }
    return "[" + text + "]";
}

std::string gestureText(const Gesture& gesture) {
    if (!gesture.custom) throw std::logic_error("a shapes file holds custom gestures only");
    const CustomShape& shape = *gesture.custom;
    std::string strokes;
    for (const Stroke& stroke : shape.strokes) {
        if (!strokes.empty()) strokes += ",\n";
        strokes += "        " + pointsText(stroke);
    }
    return fmt::format(
        "  {{\n"
        "    \"custom\": {{\n"
        "      \"fingers\": {},\n"
        "      \"name\": {},\n"
        "      \"path\": {},\n"
        "      \"strokes\": [\n{}\n      ]\n"
        "    }},\n"
        "    \"id\": {}\n"
        "  }}",
        shape.fingers, nlohmann::json(shape.name).dump(), pointsText(shape.path), strokes,
        nlohmann::json(gesture.id).dump());
}

}  // namespace

std::string shapesFileText(const std::vector<Gesture>& gestures) {
    std::string text;
    for (const Gesture& gesture : gestures) {
        if (!text.empty()) text += ",\n";
        text += gestureText(gesture);
    }
    return "[\n" + text + "\n]\n";
}

}  // namespace ostrelle::examples
