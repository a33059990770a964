#include "gestures/gesture_json.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace ostrelle {
namespace {

using nlohmann::json;

CustomShape zig() {
    return CustomShape(" Zig ", 3, {{0.1, 0.2}, {0.4, 0.6}, {1.0 / 3.0, -0.5}},
                       {{{0.1, 0.2}, {0.4, 0.6}}, {{0, 1}, {0.25, 0.75}}});
}

Gesture zigGesture() {
    Gesture gesture("3.custom.9B2E6F10-44A7-4C1D-8E3B-5F6A7B8C9D0E");
    gesture.custom = zig();
    return gesture;
}

// The message a decoder throws for a value, or "" when it decodes.
std::string gestureFailure(const json& value) {
    try {
        decodeGesture(value);
    } catch (const JSONError& error) {
        return error.what();
    }
    return "";
}

std::string shapeFailure(const json& value) {
    try {
        decodeShape(value);
    } catch (const JSONError& error) {
        return error.what();
    }
    return "";
}

TEST(GestureJSON, WritesBareIDOrObjectWithShape) {
    EXPECT_EQ(encodeGesture<json>(Gesture("3.tap")), json("3.tap"));
    EXPECT_EQ(json(Gesture("2.restSwipe.down.left")).dump(), R"("2.restSwipe.down.left")");

    // The file's writer sorts keys; line output keeps the documented order.
    EXPECT_EQ(
        json(zigGesture()).dump(),
        R"({"custom":{"fingers":3,"name":" Zig ","path":[[0.1,0.2],[0.4,0.6],[0.3333333333333333,-0.5]],)"
        R"("strokes":[[[0.1,0.2],[0.4,0.6]],[[0.0,1.0],[0.25,0.75]]]},"id":"3.custom.9B2E6F10-44A7-4C1D-8E3B-5F6A7B8C9D0E"})");
    EXPECT_EQ(
        encodeGesture<nlohmann::ordered_json>(zigGesture()).dump(),
        R"({"id":"3.custom.9B2E6F10-44A7-4C1D-8E3B-5F6A7B8C9D0E","custom":{"name":" Zig ","fingers":3,)"
        R"("path":[[0.1,0.2],[0.4,0.6],[0.3333333333333333,-0.5]],"strokes":[[[0.1,0.2],[0.4,0.6]],[[0.0,1.0],[0.25,0.75]]]}})");
}

TEST(GestureJSON, RoundTripsThroughText) {
    for (const Gesture& gesture : {Gesture("4.click"), Gesture("no.such.id"), zigGesture()}) {
        const Gesture read = json::parse(json(gesture).dump()).get<Gesture>();
        EXPECT_EQ(read, gesture) << gesture.id;
    }
    // Shapes with no points are still shapes: validity is the editor's concern, not the file's.
    Gesture empty("4.custom.E");
    empty.custom = CustomShape("", 4, {}, {});
    EXPECT_EQ(decodeGesture(json(empty)), empty);
}

TEST(GestureJSON, ReadsIDObjectAndKeepsOrDropsItsShape) {
    EXPECT_EQ(decodeGesture(json::parse(R"("4.click")")), Gesture("4.click"));
    EXPECT_EQ(decodeGesture(json::parse(R"({"id": "3.custom.X", "custom": {"bad": 1}})")),
              Gesture("3.custom.X"));
    EXPECT_EQ(decodeGesture(json::parse(R"({"id": "3.custom.X", "custom": null})")), Gesture("3.custom.X"));
    EXPECT_EQ(decodeGesture(json::parse(R"({"id": "3.custom.X"})")), Gesture("3.custom.X"));
    // An object with a string id is never read as legacy, even when it also has legacy members.
    EXPECT_EQ(decodeGesture(json::parse(R"({"id": "5.tap", "fingers": 3, "motion": "swipe"})")),
              Gesture("5.tap"));

    const Gesture kept = decodeGesture(json::parse(
        R"({"extra": true, "id": "3.custom.Y", "custom": {"name": "Z", "fingers": 3, "path": [[1, 0]], "strokes": [], "more": 1}})"));
    ASSERT_TRUE(kept.custom.has_value());
    EXPECT_EQ(*kept.custom, CustomShape("Z", 3, {{1.0, 0.0}}, {}));
}

TEST(GestureJSON, ReadsLegacyObjectsAsGenericIDs) {
    EXPECT_EQ(decodeGesture(json::parse(R"({"fingers":3,"motion":"swipe","direction":"left"})")).id,
              "3.swipe.left");
    EXPECT_EQ(decodeGesture(json::parse(R"({"fingers":2,"motion":"doubleTap"})")).id, "2.doubleTap");
    EXPECT_EQ(decodeGesture(json::parse(R"({"fingers":3,"motion":"tap","direction":null})")).id, "3.tap");

    const Gesture legacy = decodeGesture(json::parse(R"({"fingers":4,"motion":"swipe","direction":"up"})"));
    EXPECT_FALSE(legacy.custom.has_value());
    EXPECT_EQ(json(legacy).dump(), R"("4.swipe.up")");
}

TEST(GestureJSON, FailsWithTheLegacyErrorNamingThePath) {
    struct Row {
        const char* name;
        const char* text;
        const char* error;
    };
    const Row rows[] = {
        {"unknown motion", R"({"fingers":3,"motion":"wiggle"})",
         R"(gesture.motion: unknown motion "wiggle")"},
        {"motion in wrong case", R"({"fingers":3,"motion":"Tap"})",
         R"(gesture.motion: unknown motion "Tap")"},
        {"unknown direction", R"({"fingers":3,"motion":"swipe","direction":"sideways"})",
         R"(gesture.direction: unknown direction "sideways")"},
        {"direction not a string", R"({"fingers":3,"motion":"swipe","direction":1})",
         "gesture.direction: expected a string"},
        {"missing fingers", R"({"motion":"tap"})", R"(gesture: missing "fingers")"},
        {"non-string id is not an id", R"({"id":7})", R"(gesture: missing "fingers")"},
        {"missing motion", R"({"fingers":3})", R"(gesture: missing "motion")"},
        {"motion not a string", R"({"fingers":3,"motion":2})", "gesture.motion: expected a string"},
        {"fingers as text", R"({"fingers":"3","motion":"tap"})", "gesture.fingers: expected an integer"},
        {"fractional fingers", R"({"fingers":3.5,"motion":"tap"})", "gesture.fingers: expected an integer"},
        {"huge fingers", R"({"fingers":4294967296,"motion":"tap"})", "gesture.fingers: integer out of range"},
        {"number", "42", "gesture: expected a gesture id string or an object"},
        {"null", "null", "gesture: expected a gesture id string or an object"},
        {"array", R"(["3.tap"])", "gesture: expected a gesture id string or an object"},
    };
    for (const Row& row : rows) EXPECT_EQ(gestureFailure(json::parse(row.text)), row.error) << row.name;

    try {
        decodeGesture(json::parse(R"({"fingers":3,"motion":"wiggle"})"), "[2].gesture");
        FAIL() << "decoded";
    } catch (const JSONError& error) {
        EXPECT_EQ(error.path(), "[2].gesture.motion");
        EXPECT_EQ(error.problem(), R"(unknown motion "wiggle")");
    }
}

TEST(ShapeJSON, RequiresEveryMemberWithItsType) {
    struct Row {
        const char* name;
        const char* text;
        const char* error;
    };
    const Row rows[] = {
        {"not an object", "[]", "shape: expected an object"},
        {"no name", R"({"fingers":3,"path":[],"strokes":[]})", R"(shape: missing "name")"},
        {"no fingers", R"({"name":"a","path":[],"strokes":[]})", R"(shape: missing "fingers")"},
        {"no path", R"({"name":"a","fingers":3,"strokes":[]})", R"(shape: missing "path")"},
        {"no strokes", R"({"name":"a","fingers":3,"path":[]})", R"(shape: missing "strokes")"},
        {"name not a string", R"({"name":1,"fingers":3,"path":[],"strokes":[]})",
         "shape.name: expected a string"},
        {"fingers not an integer", R"({"name":"a","fingers":3.0,"path":[],"strokes":[]})",
         "shape.fingers: expected an integer"},
        {"path not an array", R"({"name":"a","fingers":3,"path":{},"strokes":[]})",
         "shape.path: expected an array of points"},
        {"point of three numbers", R"({"name":"a","fingers":3,"path":[[0,0],[1,2,3]],"strokes":[]})",
         "shape.path[1]: expected a point [x, y]"},
        {"point as object", R"({"name":"a","fingers":3,"path":[{"x":0,"y":0}],"strokes":[]})",
         "shape.path[0]: expected a point [x, y]"},
        {"coordinate as text", R"({"name":"a","fingers":3,"path":[[0,0],["1",2]],"strokes":[]})",
         "shape.path[1][0]: expected a number"},
        {"strokes not an array", R"({"name":"a","fingers":3,"path":[],"strokes":1})",
         "shape.strokes: expected an array of strokes"},
        {"stroke of bare numbers", R"({"name":"a","fingers":3,"path":[],"strokes":[[[0,0]],[0,0]]})",
         "shape.strokes[1][0]: expected a point [x, y]"},
        {"stroke not an array", R"({"name":"a","fingers":3,"path":[],"strokes":[5]})",
         "shape.strokes[0]: expected an array of points"},
        {"bad stroke point", R"({"name":"a","fingers":3,"path":[],"strokes":[[[0,0]],[[0,0],[1,1],[2]]]})",
         "shape.strokes[1][2]: expected a point [x, y]"},
    };
    for (const Row& row : rows) EXPECT_EQ(shapeFailure(json::parse(row.text)), row.error) << row.name;

    // The parser refuses 1e999, but a value built in memory can hold an infinity.
    json infinite = json::parse(R"({"name":"a","fingers":3,"path":[[0,0]],"strokes":[]})");
    infinite["path"][0][1] = std::numeric_limits<double>::infinity();
    EXPECT_EQ(shapeFailure(infinite), "shape.path[0][1]: number out of range");
}

TEST(ShapeJSON, KeepsTheNameAsTypedAndNumbersExactly) {
    const CustomShape read = decodeShape(json::parse(json(zig()).dump()));
    EXPECT_EQ(read, zig());
    EXPECT_EQ(read.name, " Zig ");
    EXPECT_EQ(read.path[2].x, 1.0 / 3.0);
    EXPECT_EQ(json::parse(R"({"name":"a","fingers":3,"path":[[1,-2]],"strokes":[]})").get<CustomShape>().path,
              (std::vector<Point>{{1.0, -2.0}}));
}

}  // namespace
}  // namespace ostrelle
