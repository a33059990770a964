// The bindings file: exact bytes written, every reading failure, every tolerance.
#include "store/bindings_file.h"

#include <gtest/gtest.h>

#include "actions/action_ref_json.h"
#include "gestures/gesture_json.h"
#include "store/json_writer.h"

namespace ostrelle {
namespace {

GestureBinding plainBinding() {
    return {"0E4A5C3B-7D2F-4B8E-9A61-3C5D7E9F1A2B", Gesture("2.restTap.left"),
            ActionRef{"browsers", "back", {}, {}}, 753300000.25};
}

std::string withBinding(const std::string& member) {
    return R"([{"id": "0E4A5C3B-7D2F-4B8E-9A61-3C5D7E9F1A2B", "gesture": "3.tap",
              "action": {"appID": "browsers", "optionID": "back"}, "createdAt": 1)" +
           member + "}]";
}

TEST(BindingsFileWriting, ExactBytesForABuiltInAndADrawnGesture) {
    GestureBinding drawn{
        "5D1E2F30-6A7B-4C8D-9E0F-1A2B3C4D5E6F", Gesture("3.custom.9B2E6F10-44A7-4C1D-8E3B-5F6A7B8C9D0E"),
        ActionRef{"keyboard", "custom", KeyShortcut{17, 0x40000 | 0x100000}, {}}, 753300100.5};
    drawn.gesture.custom = CustomShape("Zig", 3, {{0.1, 0.2}}, {{{-0.5, 1}}});
    EXPECT_EQ(encodeBindingsFile({plainBinding(), drawn}),
              R"([
  {
    "action" : {
      "appID" : "browsers",
      "optionID" : "back"
    },
    "createdAt" : 753300000.25,
    "gesture" : "2.restTap.left",
    "id" : "0E4A5C3B-7D2F-4B8E-9A61-3C5D7E9F1A2B"
  },
  {
    "action" : {
      "appID" : "keyboard",
      "optionID" : "custom",
      "shortcut" : {
        "key" : 17,
        "modifiers" : [
          "control",
          "command"
        ]
      }
    },
    "createdAt" : 753300100.5,
    "gesture" : {
      "custom" : {
        "fingers" : 3,
        "name" : "Zig",
        "path" : [
          [
            0.1,
            0.2
          ]
        ],
        "strokes" : [
          [
            [
              -0.5,
              1
            ]
          ]
        ]
      },
      "id" : "3.custom.9B2E6F10-44A7-4C1D-8E3B-5F6A7B8C9D0E"
    },
    "id" : "5D1E2F30-6A7B-4C8D-9E0F-1A2B3C4D5E6F"
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
    drawn.gesture.custom =
        CustomShape("Zürich \"/\" \t", 4, {{-0.0, 1e-7}, {0.30000000000000004, 123456789.125}}, {});
    GestureBinding everyModifier{"0E4A5C3B-7D2F-4B8E-9A61-3C5D7E9F1A2B", Gesture("3.tap"),
                                 ActionRef{"keyboard",
                                           "custom",
                                           KeyShortcut{127, EventFlag::shift | EventFlag::control |
                                                                EventFlag::option | EventFlag::command},
                                           {}},
                                 1e300};
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

TEST(BindingsFileReading, RoundTripsWhatItWrites) {
    GestureBinding app{"5D1E2F30-6A7B-4C8D-9E0F-1A2B3C4D5E6F", Gesture("4.tap"),
                       ActionRef{"openapps", "app", {}, URL::parse("file:///Applications/Preview.app/")},
                       1.0 / 3};
    const std::vector<GestureBinding> bindings{plainBinding(), app};
    EXPECT_EQ(decodeBindingsFile(encodeBindingsFile(bindings)), bindings);
    EXPECT_NE(encodeBindingsFile(bindings).find(R"("file:\/\/\/Applications\/Preview.app\/")"),
              std::string::npos);
}

TEST(BindingsFileReading, LegacyGesturesAreReadAndWrittenBackAsIds) {
    const auto bindings = decodeBindingsFile(R"([{"id": "0e4a5c3b-7d2f-4b8e-9a61-3c5d7e9f1a2b",
        "gesture": {"fingers": 4, "motion": "swipe", "direction": "up"},
        "action": {"appID": "browsers", "optionID": "back"}, "createdAt": 7}])");
    ASSERT_EQ(bindings.size(), 1U);
    EXPECT_EQ(bindings[0].gesture.id, "4.swipe.up");
    EXPECT_EQ(bindings[0].id, "0E4A5C3B-7D2F-4B8E-9A61-3C5D7E9F1A2B");  // canonical case
    EXPECT_NE(encodeBindingsFile(bindings).find(R"("gesture" : "4.swipe.up")"), std::string::npos);
}

TEST(BindingsFileReading, TolerancesKeepTheBinding) {
    const char* members[] = {
        R"(, "extra": {"anything": [1, 2]})",
        R"(, "gesture": {"id": "3.custom.X", "custom": {"bad": 1}})",
    };
    for (const char* member : members) {
        std::string text = withBinding(member);
        EXPECT_EQ(decodeBindingsFile(text).size(), 1U) << member;
    }
    const auto noApp =
        decodeBindingsFile(R"([{"id": "0E4A5C3B-7D2F-4B8E-9A61-3C5D7E9F1A2B", "gesture": "3.tap",
        "action": {"appID": "openapps", "optionID": "app", "app": 42}, "createdAt": 1}])");
    ASSERT_EQ(noApp.size(), 1U);
    EXPECT_FALSE(noApp[0].action.app.has_value());
    EXPECT_TRUE(decodeBindingsFile("[]").empty());
}

struct BadFile {
    const char* name;
    std::string text;
    const char* message;
};

class BindingsFileFailures : public ::testing::TestWithParam<BadFile> {};

TEST_P(BindingsFileFailures, FailTheWholeFileWithAMessage) {
    try {
        (void)decodeBindingsFile(GetParam().text);
        FAIL() << "read";
    } catch (const BindingsFileError& error) {
        EXPECT_EQ(std::string(error.what()).find(GetParam().message), 0U) << error.what();
    }
}

const std::string goodBinding =
    R"({"id": "0E4A5C3B-7D2F-4B8E-9A61-3C5D7E9F1A2B", "gesture": "3.tap", "action": {"appID": "a", "optionID": "b"}, "createdAt": 1})";

INSTANTIATE_TEST_SUITE_P(
    BindingsFile, BindingsFileFailures,
    ::testing::Values(
        BadFile{"Syntax", "{", "not valid JSON"},
        // Refused by the parser as out of range rather than as a syntax error, but refused all the same.
        BadFile{"NumberTooLargeForADouble",
                R"([{"id": "0E4A5C3B-7D2F-4B8E-9A61-3C5D7E9F1A2B", "gesture": "3.tap",
                     "action": {"appID": "a", "optionID": "b"}, "createdAt": 1e999}])",
                "not valid JSON"},
        BadFile{"NotAnArray", R"({"bindings": []})", "the file is not a JSON array of bindings"},
        BadFile{"SecondBindingMissingId", "[" + goodBinding + R"(, {"gesture": "3.tap"}])",
                "binding 2: missing \"id\""},
        BadFile{"BadUUID", R"([{"id": "nope", "gesture": "3.tap"}])",
                "binding 1: \"id\" is not a UUID: nope"},
        BadFile{"MissingAction",
                R"([{"id": "0E4A5C3B-7D2F-4B8E-9A61-3C5D7E9F1A2B", "gesture": "3.tap", "createdAt": 1}])",
                "binding 1: missing \"action\""},
        BadFile{
            "UnknownLegacyMotion",
            R"([{"id": "0E4A5C3B-7D2F-4B8E-9A61-3C5D7E9F1A2B", "gesture": {"fingers": 3, "motion": "wiggle"},
                     "action": {"appID": "a", "optionID": "b"}, "createdAt": 1}])",
            "binding 1: gesture.motion: unknown motion \"wiggle\""},
        BadFile{"KeyOutOfRangeInAShortcutIsDroppedButIdsAreRequired",
                R"([{"id": "0E4A5C3B-7D2F-4B8E-9A61-3C5D7E9F1A2B", "gesture": "3.tap",
                     "action": {"optionID": "b"}, "createdAt": 1}])",
                "binding 1: action: missing \"appID\""},
        BadFile{"CreatedAtNotANumber",
                R"([{"id": "0E4A5C3B-7D2F-4B8E-9A61-3C5D7E9F1A2B", "gesture": "3.tap",
                     "action": {"appID": "a", "optionID": "b"}, "createdAt": "yesterday"}])",
                "binding 1: \"createdAt\" is not a number"}),
    [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace ostrelle
