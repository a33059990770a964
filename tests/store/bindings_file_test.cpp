// The bindings file: exact bytes written, every reading failure, every tolerance.
#include "store/bindings_file.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "actions/action_ref_json.h"
#include "gestures/gesture_json.h"
#include "store/json_writer.h"

namespace ostrelle {
namespace {

GestureBinding plainBinding() {
    return {"0E4A5C3B-7D2F-4B8E-9A61-3C5D7E9F1A2B", Gesture("2.restTap.left"),
            ActionRef{"browsers", "back", {}, {}}, 753300000.25};
}

TEST(BindingsFileWriting, ExactBytes) {
    EXPECT_EQ(encodeBindingsFile({plainBinding()}), R"([
  {
    "action" : {
      "appID" : "browsers",
      "optionID" : "back"
    },
    "createdAt" : 753300000.25,
    "gesture" : "2.restTap.left",
    "id" : "0E4A5C3B-7D2F-4B8E-9A61-3C5D7E9F1A2B"
  }
])");
    EXPECT_EQ(encodeBindingsFile({}), "[\n\n]");
}

// The file is printed straight from the model; the tree of the same bindings, printed by the
// generic writer, is the reference for member order and every number and string.
TEST(BindingsFileWriting, PrintsWhatTheTreeOfTheSameBindingsPrints) {
    GestureBinding drawn{
        "5D1E2F30-6A7B-4C8D-9E0F-1A2B3C4D5E6F", Gesture("4.custom.9B2E6F10-44A7-4C1D-8E3B-5F6A7B8C9D0E"),
        ActionRef{"keyboard", "custom", KeyShortcut{0, 0}, URL::parse("file:///Applications/A b.app/")},
        -0.0};
    drawn.gesture.custom = CustomShape(
        "Zürich \"/\" \t", 4, {{-0.0, 1e-7}, {0.30000000000000004, 123456789.125}}, {{{0.5, -1}}, {}});
    const EventFlags all = EventFlag::shift | EventFlag::control | EventFlag::option | EventFlag::command;
    const GestureBinding everyModifier{"0E4A5C3B-7D2F-4B8E-9A61-3C5D7E9F1A2B", Gesture("3.tap"),
                                       ActionRef{"keyboard", "custom", KeyShortcut{127, all}, {}}, 1e300};
    const std::vector<GestureBinding> bindings{plainBinding(), drawn, everyModifier};

    nlohmann::json tree = nlohmann::json::array();
    for (const GestureBinding& b : bindings) {
        tree.push_back({{"id", b.id},
                        {"gesture", encodeGesture<nlohmann::json>(b.gesture)},
                        {"action", toJSON(b.action)},
                        {"createdAt", b.createdAt}});
    }
    EXPECT_EQ(encodeBindingsFile(bindings), writeBindingsStyleJSON(tree));
}

TEST(BindingsFileReading, RoundTripsWhatItWritesAndReadsLegacyGesturesAsIds) {
    GestureBinding app{"5D1E2F30-6A7B-4C8D-9E0F-1A2B3C4D5E6F", Gesture("4.tap"),
                       ActionRef{"openapps", "app", {}, URL::parse("file:///Applications/Preview.app/")},
                       1.0 / 3};
    const std::vector<GestureBinding> bindings{plainBinding(), app};
    EXPECT_EQ(decodeBindingsFile(encodeBindingsFile(bindings)), bindings);

    const auto legacy = decodeBindingsFile(R"([{"id": "0e4a5c3b-7d2f-4b8e-9a61-3c5d7e9f1a2b",
        "gesture": {"fingers": 4, "motion": "swipe", "direction": "up"},
        "action": {"appID": "browsers", "optionID": "back"}, "createdAt": 7}])");
    ASSERT_EQ(legacy.size(), 1U);
    EXPECT_EQ(legacy[0].gesture.id, "4.swipe.up");
    EXPECT_EQ(legacy[0].id, "0E4A5C3B-7D2F-4B8E-9A61-3C5D7E9F1A2B");  // canonical case
}

const std::string goodBinding = R"({"id": "0E4A5C3B-7D2F-4B8E-9A61-3C5D7E9F1A2B", "gesture": "3.tap",
    "action": {"appID": "openapps", "optionID": "app"}, "createdAt": 1)";

TEST(BindingsFileRead, KeepsTheBindingOrFailsTheWholeFileWithAMessage) {
    // A good binding with one member replaced (or removed, when the value is null), or a whole file.
    const struct {
        const char* member;  // empty: `value` is the whole file
        std::optional<std::string> value;
        const char* message;  // how the error starts; null: the binding is kept
    } rows[] = {
        {"extra", R"({"anything": [1, 2]})", nullptr},
        {"gesture", R"({"id": "3.custom.X", "custom": {"bad": 1}})", nullptr},  // a bad shape is tolerated
        {"action", R"({"appID": "openapps", "optionID": "app", "app": 42})", nullptr},  // the app is dropped
        {"", "{", "not valid JSON"},
        // Refused by the parser as out of range rather than as a syntax error, but refused all the same.
        {"", "[" + goodBinding + "e999}]", "not valid JSON"},
        {"", R"({"bindings": []})", "the file is not a JSON array of bindings"},
        {"", "[" + goodBinding + R"(}, {"gesture": "3.tap"}])", "binding 2: missing \"id\""},
        {"id", R"("nope")", "binding 1: \"id\" is not a UUID: nope"},
        {"action", std::nullopt, "binding 1: missing \"action\""},
        {"gesture", R"({"fingers": 3, "motion": "wiggle"})",
         "binding 1: gesture.motion: unknown motion \"wiggle\""},
        {"action", R"({"optionID": "b"})", "binding 1: action: missing \"appID\""},
        {"createdAt", R"("yesterday")", "binding 1: \"createdAt\" is not a number"},
    };
    for (const auto& row : rows) {
        std::string text = row.value.value_or("");
        if (*row.member != '\0') {
            nlohmann::json binding = nlohmann::json::parse(goodBinding + "}");
            if (row.value) binding[row.member] = nlohmann::json::parse(*row.value);
            if (!row.value) binding.erase(row.member);
            text = "[" + binding.dump() + "]";
        }
        try {
            const std::vector<GestureBinding> read = decodeBindingsFile(text);
            EXPECT_EQ(row.message, nullptr) << text;
            ASSERT_EQ(read.size(), 1U);
            EXPECT_FALSE(read[0].action.app.has_value());
        } catch (const BindingsFileError& error) {
            ASSERT_NE(row.message, nullptr) << error.what();
            EXPECT_EQ(std::string(error.what()).find(row.message), 0U) << error.what();
        }
    }
}

}  // namespace
}  // namespace ostrelle
