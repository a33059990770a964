#include "gestures/gesture_json.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace ostrelle {
namespace {

using nlohmann::json;

Gesture zigGesture() {
    Gesture gesture("3.custom.9B2E6F10-44A7-4C1D-8E3B-5F6A7B8C9D0E");
    gesture.custom = CustomShape(" Zig ", 3, {{0.1, 0.2}, {0.4, 0.6}, {1.0 / 3.0, -0.5}},
                                 {{{0.1, 0.2}, {0.4, 0.6}}, {{0, 1}, {0.25, 0.75}}});
    return gesture;
}

// The message a decoder throws for a value, or "" when it decodes.
template <class Decode>
std::string failure(Decode decode, const json& value, const char* path) {
    try {
        decode(value, path);
    } catch (const JSONError& error) {
        return error.what();
    }
    return "";
}

TEST(GestureJSON, WritesBareIDOrObjectWithShapeAndReadsItBack) {
    EXPECT_EQ(json(Gesture("2.restSwipe.down.left")).dump(), R"("2.restSwipe.down.left")");
    // Line output keeps the documented order (the file's writer sorts keys).
    EXPECT_EQ(
        encodeGesture<nlohmann::ordered_json>(zigGesture()).dump(),
        R"({"id":"3.custom.9B2E6F10-44A7-4C1D-8E3B-5F6A7B8C9D0E","custom":{"name":" Zig ","fingers":3,)"
        R"("path":[[0.1,0.2],[0.4,0.6],[0.3333333333333333,-0.5]],"strokes":[[[0.1,0.2],[0.4,0.6]],[[0.0,1.0],[0.25,0.75]]]}})");

    // What is written reads back, names as typed and numbers exactly. Shapes with no points are still shapes:
    // validity is the editor's concern, not the file's.
    Gesture empty("4.custom.E");
    empty.custom = CustomShape("", 4, {}, {});
    for (const Gesture& gesture : {Gesture("4.click"), Gesture("no.such.id"), zigGesture(), empty}) {
        EXPECT_EQ(json::parse(json(gesture).dump()).get<Gesture>(), gesture) << gesture.id;
    }
}

TEST(GestureJSON, ReadsIDsIDObjectsAndLegacyObjects) {
    const std::pair<const char*, Gesture> rows[] = {
        {R"("4.click")", Gesture("4.click")},
        // A damaged or absent shape costs the drawing, not the binding.
        {R"({"id": "3.custom.X", "custom": {"bad": 1}})", Gesture("3.custom.X")},
        {R"({"id": "3.custom.X"})", Gesture("3.custom.X")},
        // An object with a string id is never read as legacy, even when it also has legacy members.
        {R"({"id": "5.tap", "fingers": 3, "motion": "swipe"})", Gesture("5.tap")},
        {R"({"fingers":3,"motion":"swipe","direction":"left"})", Gesture("3.swipe.left")},
        {R"({"fingers":2,"motion":"doubleTap"})", Gesture("2.doubleTap")},
        {R"({"fingers":3,"motion":"tap","direction":null})", Gesture("3.tap")},
    };
    for (const auto& [text, expected] : rows) EXPECT_EQ(decodeGesture(json::parse(text)), expected) << text;

    const Gesture kept = decodeGesture(json::parse(
        R"({"extra": true, "id": "3.custom.Y", "custom": {"name": "Z", "fingers": 3, "path": [[1, -2]], "strokes": [], "more": 1}})"));
    ASSERT_TRUE(kept.custom.has_value());
    EXPECT_EQ(*kept.custom, CustomShape("Z", 3, {{1.0, -2.0}}, {}));
}

TEST(GestureJSON, FailsWithTheLegacyErrorNamingThePath) {
    const std::pair<const char*, const char*> rows[] = {
        {R"({"fingers":3,"motion":"wiggle"})", R"(gesture.motion: unknown motion "wiggle")"},
        {R"({"fingers":3,"motion":"Tap"})", R"(gesture.motion: unknown motion "Tap")"},
        {R"({"fingers":3,"motion":"swipe","direction":"sideways"})",
         R"(gesture.direction: unknown direction "sideways")"},
        {R"({"motion":"tap"})", R"(gesture: missing "fingers")"},
        {R"({"id":7})", R"(gesture: missing "fingers")"},  // a non-string id is no id
        {R"({"fingers":3,"motion":2})", "gesture.motion: expected a string"},
        {R"({"fingers":3.5,"motion":"tap"})", "gesture.fingers: expected an integer"},
        {R"({"fingers":4294967296,"motion":"tap"})", "gesture.fingers: integer out of range"},
        {"42", "gesture: expected a gesture id string or an object"},
    };
    for (const auto& [text, error] : rows)
        EXPECT_EQ(failure(decodeGesture, json::parse(text), "gesture"), error) << text;
    EXPECT_EQ(failure(decodeGesture, json::parse(R"({"fingers":3,"motion":"wiggle"})"), "[2].gesture"),
              R"([2].gesture.motion: unknown motion "wiggle")");
}

TEST(ShapeJSON, RequiresEveryMemberWithItsType) {
    // Each row changes one member of a good shape (null removes it).
    const json good = json::parse(R"({"name":"a","fingers":3,"path":[],"strokes":[]})");
    const std::pair<const char*, const char*> rows[] = {
        {R"({"name":null})", R"(shape: missing "name")"},
        {R"({"name":1})", "shape.name: expected a string"},
        {R"({"fingers":3.0})", "shape.fingers: expected an integer"},
        {R"({"fingers":6})", "shape.fingers: must be 1 to 5"},
        {R"({"path":{}})", "shape.path: expected an array of points"},
        {R"({"path":[[0,0],[1,2,3]]})", "shape.path[1]: expected a point [x, y]"},
        {R"({"path":[{"x":0,"y":0}]})", "shape.path[0]: expected a point [x, y]"},
        {R"({"path":[[0,0],["1",2]]})", "shape.path[1][0]: expected a number"},
        {R"({"strokes":1})", "shape.strokes: expected an array of strokes"},
        {R"({"strokes":[5]})", "shape.strokes[0]: expected an array of points"},
        {R"({"strokes":[[[0,0]],[[0,0],[1,1],[2]]]})", "shape.strokes[1][2]: expected a point [x, y]"},
    };
    for (const auto& [patch, error] : rows) {
        json shape = good;
        shape.merge_patch(json::parse(patch));
        EXPECT_EQ(failure(decodeShape, shape, "shape"), error) << patch;
    }
    EXPECT_EQ(failure(decodeShape, json::array(), "shape"), "shape: expected an object");
    // The parser refuses 1e999, but a value built in memory can hold an infinity.
    json infinite = good;
    infinite["path"] = {{0, std::numeric_limits<double>::infinity()}};
    EXPECT_EQ(failure(decodeShape, infinite, "shape"), "shape.path[0][1]: number out of range");
}

}  // namespace
}  // namespace ostrelle
