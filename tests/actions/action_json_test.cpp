#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "actions/action_ref_json.h"
#include "actions/key_shortcut_json.h"

namespace ostrelle {
namespace {

using nlohmann::json;

constexpr EventFlags all = EventFlag::control | EventFlag::option | EventFlag::shift | EventFlag::command;

// Runs a decoder expected to fail and hands back its error.
template <typename Decode>
JSONError failure(Decode decode) {
    try {
        decode();
    } catch (const JSONError& error) {
        return error;
    }
    ADD_FAILURE() << "decoding succeeded";
    return JSONError("", "");
}

TEST(KeyShortcutJSON, WritesModifiersInFixedOrder) {
    EXPECT_EQ(toJSON(KeyShortcut{17, EventFlag::command | EventFlag::control}),
              json::parse(R"({"key": 17, "modifiers": ["control", "command"]})"));
    EXPECT_EQ(toJSON(KeyShortcut{0, all}),
              json::parse(R"({"key": 0, "modifiers": ["control", "option", "shift", "command"]})"));
    EXPECT_EQ(toJSON(KeyShortcut{122, 0}), json::parse(R"({"key": 122, "modifiers": []})"));
    // Bits that are not modifier keys are not stored.
    EXPECT_EQ(toJSON(KeyShortcut{122, EventFlag::secondaryFn | EventFlag::shift}),
              json::parse(R"({"key": 122, "modifiers": ["shift"]})"));
}

TEST(KeyShortcutJSON, ReadsAnyOrderRepeatsAndExtras) {
    EXPECT_EQ(keyShortcutFromJSON(
                  json::parse(R"({"modifiers": ["command", "shift", "option", "control"], "key": 3})")),
              (KeyShortcut{3, all}));
    EXPECT_EQ(keyShortcutFromJSON(json::parse(R"({"key": 3, "modifiers": ["shift", "shift"]})")),
              (KeyShortcut{3, EventFlag::shift}));
    EXPECT_EQ(keyShortcutFromJSON(json::parse(R"({"key": 127, "modifiers": [], "extra": null})")),
              (KeyShortcut{127, 0}));
    EXPECT_EQ(keyShortcutFromJSON(json::parse(R"({"key": 5.0, "modifiers": []})")), (KeyShortcut{5, 0}));
    EXPECT_EQ(json::parse(R"({"key": 0, "modifiers": ["option"]})").get<KeyShortcut>(),
              (KeyShortcut{0, EventFlag::option}));
}

// Decoding either a shortcut or a whole action reference fails with where and why.
struct BadJSON {
    const char* name;
    const char* text;
    const char* message;  // the error's text, or how it starts
    bool action = false;  // decoded as an action reference rather than a shortcut

    friend void PrintTo(const BadJSON& row, std::ostream* out) { *out << row.name; }
};

class ActionJSONFailure : public ::testing::TestWithParam<BadJSON> {};

TEST_P(ActionJSONFailure, SaysWhatAndWhere) {
    const BadJSON& row = GetParam();
    const json parsed = json::parse(row.text);
    const JSONError error = failure([&] {
        if (row.action) (void)actionRefFromJSON(parsed);
        if (!row.action) (void)keyShortcutFromJSON(parsed);
    });
    EXPECT_TRUE(std::string(error.what()).starts_with(row.message)) << error.what();
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ActionJSONFailure,
    ::testing::Values(
        BadJSON{"keyAboveRange", R"({"key": 128, "modifiers": []})", "shortcut.key: key code out of range"},
        BadJSON{"keyBelowRange", R"({"key": -1, "modifiers": []})", "shortcut.key: key code out of range"},
        BadJSON{"keyHuge", R"({"key": 18446744073709551615, "modifiers": []})", "shortcut.key: "},
        BadJSON{"keyFraction", R"({"key": 1.5, "modifiers": []})", "shortcut.key: expected an integer"},
        BadJSON{"keyString", R"({"key": "1", "modifiers": []})", "shortcut.key: expected an integer"},
        BadJSON{"keyMissing", R"({"modifiers": []})", "shortcut: missing \"key\""},
        BadJSON{"unknownModifier", R"({"key": 1, "modifiers": ["shift", "hyper"]})",
                "shortcut.modifiers: unknown modifier hyper"},
        BadJSON{"modifierCase", R"({"key": 1, "modifiers": ["Shift"]})",
                "shortcut.modifiers: unknown modifier Shift"},
        BadJSON{"modifierNotString", R"({"key": 1, "modifiers": [1]})",
                "shortcut.modifiers[0]: expected a string"},
        BadJSON{"modifiersNotArray", R"({"key": 1, "modifiers": "shift"})", "shortcut.modifiers: "},
        BadJSON{"modifiersMissing", R"({"key": 1})", "shortcut: missing \"modifiers\""},
        BadJSON{"shortcutNotAnObject", R"([1, []])", "shortcut: expected an object"},
        BadJSON{"appIDMissing", R"({"optionID": "back"})", "action: missing \"appID\"", true},
        BadJSON{"optionIDMissing", R"({"appID": "browsers"})", "action: missing \"optionID\"", true},
        BadJSON{"appIDNotAString", R"({"appID": 1, "optionID": "back"})", "action.appID: expected a string",
                true},
        BadJSON{"optionIDNull", R"({"appID": "a", "optionID": null})", "action.optionID: expected a string",
                true},
        BadJSON{"actionNotAnObject", R"("browsers/back")", "action: expected an object", true}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(ActionRefJSON, WritesOnlyPresentMembers) {
    EXPECT_EQ(toJSON(ActionRef{"browsers", "back", {}, {}}),
              json::parse(R"({"appID": "browsers", "optionID": "back"})"));
    ActionRef full{"keyboard", "custom", KeyShortcut{17, EventFlag::control | EventFlag::command},
                   URL::fileURL("/Applications/My App.app", true)};
    EXPECT_EQ(toJSON(full), json::parse(R"({"appID": "keyboard", "optionID": "custom",
        "shortcut": {"key": 17, "modifiers": ["control", "command"]},
        "app": "file:///Applications/My%20App.app/"})"));
    EXPECT_EQ(toJSON(full).get<ActionRef>(), full);
}

TEST(ActionRefJSON, DamagedExtrasAreDroppedNotFatal) {
    const char* extras[] = {
        R"("app": 42)",
        R"("app": "")",
        R"("app": null)",
        R"("app": ["file:///A.app"])",
        R"("shortcut": {"key": 128, "modifiers": []})",
        R"("shortcut": {"key": 1, "modifiers": ["hyper"]})",
        R"("shortcut": "⌘K")",
        R"("shortcut": null, "other": 1)",
    };
    for (const char* extra : extras) {
        const std::string text = R"({"appID": "openapps", "optionID": "app", )" + std::string(extra) + "}";
        EXPECT_EQ(actionRefFromJSON(json::parse(text)), (ActionRef{"openapps", "app", {}, {}})) << text;
    }
    // A damaged shortcut does not cost the app.
    const ActionRef read = actionRefFromJSON(json::parse(
        R"({"appID": "a", "optionID": "b", "shortcut": {"key": -1, "modifiers": []}, "app": "file:///X.app/"})"));
    EXPECT_FALSE(read.shortcut);
    EXPECT_EQ(read.app, URL::parse("file:///X.app/"));
}

}  // namespace
}  // namespace ostrelle
