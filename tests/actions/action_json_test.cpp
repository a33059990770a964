#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "actions/action_ref_json.h"
#include "actions/key_shortcut_json.h"

namespace ostrelle {
namespace {

using nlohmann::json;

constexpr EventFlags all = EventFlag::control | EventFlag::option | EventFlag::shift | EventFlag::command;

TEST(KeyShortcutJSON, WritesModifiersInFixedOrder) {
    EXPECT_EQ(toJSON(KeyShortcut{0, all}),
              json::parse(R"({"key": 0, "modifiers": ["control", "option", "shift", "command"]})"));
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
}

// Decoding either a shortcut or a whole action reference fails with where and why.
TEST(ActionJSONFailure, SaysWhatAndWhere) {
    const struct {
        const char* name;
        const char* text;
        const char* message;  // the error's text, or how it starts
        bool action = false;  // decoded as an action reference rather than a shortcut
    } rows[] = {
        {"keyAboveRange", R"({"key": 128, "modifiers": []})", "shortcut.key: key code out of range"},
        {"keyBelowRange", R"({"key": -1, "modifiers": []})", "shortcut.key: key code out of range"},
        {"keyHuge", R"({"key": 18446744073709551615, "modifiers": []})", "shortcut.key: "},
        {"keyFraction", R"({"key": 1.5, "modifiers": []})", "shortcut.key: expected an integer"},
        {"keyString", R"({"key": "1", "modifiers": []})", "shortcut.key: expected an integer"},
        {"keyMissing", R"({"modifiers": []})", "shortcut: missing \"key\""},
        {"unknownModifier", R"({"key": 1, "modifiers": ["shift", "hyper"]})",
         "shortcut.modifiers: unknown modifier hyper"},
        {"modifierCase", R"({"key": 1, "modifiers": ["Shift"]})",
         "shortcut.modifiers: unknown modifier Shift"},
        {"modifierNotString", R"({"key": 1, "modifiers": [1]})", "shortcut.modifiers[0]: expected a string"},
        {"modifiersNotArray", R"({"key": 1, "modifiers": "shift"})", "shortcut.modifiers: "},
        {"modifiersMissing", R"({"key": 1})", "shortcut: missing \"modifiers\""},
        {"shortcutNotAnObject", R"([1, []])", "shortcut: expected an object"},
        {"appIDMissing", R"({"optionID": "back"})", "action: missing \"appID\"", true},
        {"optionIDMissing", R"({"appID": "browsers"})", "action: missing \"optionID\"", true},
        {"optionIDNull", R"({"appID": "a", "optionID": null})", "action.optionID: expected a string", true},
        {"actionNotAnObject", R"("browsers/back")", "action: expected an object", true},
    };
    for (const auto& row : rows) {
        const json parsed = json::parse(row.text);
        try {
            if (row.action) (void)actionRefFromJSON(parsed);
            if (!row.action) (void)keyShortcutFromJSON(parsed);
            ADD_FAILURE() << row.name << ": decoding succeeded";
        } catch (const JSONError& error) {
            EXPECT_TRUE(std::string(error.what()).starts_with(row.message))
                << row.name << ": " << error.what();
        }
    }
}

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
        R"("app": ["file:///A.app"])",
        R"("shortcut": {"key": 128, "modifiers": []})",
        R"("shortcut": {"key": 1, "modifiers": ["hyper"]})",
        R"("shortcut": "⌘K")",
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
