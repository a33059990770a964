#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <ostream>

#include "actions/action_ref_json.h"
#include "actions/key_shortcut_json.h"

namespace ostrelle {
namespace {

using nlohmann::json;

constexpr EventFlags all = EventFlag::control | EventFlag::option | EventFlag::shift | EventFlag::command;

// Runs a decoder expected to fail and hands back its error.
template <typename Decode>
JsonDecodeError failure(Decode decode) {
    try {
        decode();
    } catch (const JsonDecodeError& error) {
        return error;
    }
    ADD_FAILURE() << "decoding succeeded";
    return JsonDecodeError(JsonDecodeError::Kind::dataCorrupted, "", "");
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

TEST(KeyShortcutJSON, RoundTripsEveryStorableModifierSet) {
    for (EventFlags bits = 0; bits < 16; ++bits) {
        EventFlags flags = 0;
        for (std::size_t i = 0; i < 4; ++i) {
            if ((bits >> i) & 1) flags |= KeyShortcut::modifiers()[i].flag;
        }
        const KeyShortcut shortcut{static_cast<std::int64_t>(bits * 8), flags};
        EXPECT_EQ(keyShortcutFromJSON(json::parse(toJSON(shortcut).dump())), shortcut) << bits;
    }
}

struct BadShortcut {
    const char* name;
    const char* text;
    JsonDecodeError::Kind kind;
    const char* key;
    const char* description;
};

// Test names show the row name rather than the bytes of the row.
void PrintTo(const BadShortcut& row, std::ostream* out) {
    *out << row.name;
}

class KeyShortcutJSONFailure : public ::testing::TestWithParam<BadShortcut> {};

TEST_P(KeyShortcutJSONFailure, NamesKeyAndReason) {
    const BadShortcut& c = GetParam();
    const JsonDecodeError error = failure([&] { (void)keyShortcutFromJSON(json::parse(c.text)); });
    EXPECT_EQ(error.kind(), c.kind);
    EXPECT_EQ(error.key(), c.key);
    if (*c.description != '\0') {
        EXPECT_EQ(error.description(), c.description);
    }
}

constexpr auto corrupt = JsonDecodeError::Kind::dataCorrupted;
constexpr auto mismatch = JsonDecodeError::Kind::typeMismatch;
constexpr auto missing = JsonDecodeError::Kind::keyNotFound;

INSTANTIATE_TEST_SUITE_P(
    Cases, KeyShortcutJSONFailure,
    ::testing::Values(
        BadShortcut{"keyAboveRange", R"({"key": 128, "modifiers": []})", corrupt, "key",
                    "key code out of range"},
        BadShortcut{"keyBelowRange", R"({"key": -1, "modifiers": []})", corrupt, "key",
                    "key code out of range"},
        BadShortcut{"keyHuge", R"({"key": 18446744073709551615, "modifiers": []})", mismatch, "key", ""},
        BadShortcut{"keyFraction", R"({"key": 1.5, "modifiers": []})", mismatch, "key", ""},
        BadShortcut{"keyString", R"({"key": "1", "modifiers": []})", mismatch, "key", ""},
        BadShortcut{"keyBool", R"({"key": true, "modifiers": []})", mismatch, "key", ""},
        BadShortcut{"keyMissing", R"({"modifiers": []})", missing, "key", ""},
        BadShortcut{"unknownModifier", R"({"key": 1, "modifiers": ["shift", "hyper"]})", corrupt, "modifiers",
                    "unknown modifier hyper"},
        BadShortcut{"modifierCase", R"({"key": 1, "modifiers": ["Shift"]})", corrupt, "modifiers",
                    "unknown modifier Shift"},
        BadShortcut{"modifierNotString", R"({"key": 1, "modifiers": [1]})", mismatch, "modifiers", ""},
        BadShortcut{"modifiersNotArray", R"({"key": 1, "modifiers": "shift"})", mismatch, "modifiers", ""},
        BadShortcut{"modifiersMissing", R"({"key": 1})", missing, "modifiers", ""},
        BadShortcut{"notAnObject", R"([1, []])", mismatch, "", ""}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(KeyShortcutJSONFailureMessage, SaysWhatAndWhere) {
    const JsonDecodeError error =
        failure([] { (void)keyShortcutFromJSON(json::parse(R"({"key": 300, "modifiers": []})")); });
    EXPECT_STREQ(error.what(), "data corrupted at \"key\": key code out of range");
}

TEST(ActionRefJSON, WritesOnlyPresentMembers) {
    EXPECT_EQ(toJSON(ActionRef{"browsers", "back", {}, {}}),
              json::parse(R"({"appID": "browsers", "optionID": "back"})"));
    ActionRef full{"keyboard", "custom", KeyShortcut{17, EventFlag::control | EventFlag::command},
                   URL::fileURL("/Applications/Preview.app", true)};
    EXPECT_EQ(toJSON(full), json::parse(R"({"appID": "keyboard", "optionID": "custom",
        "shortcut": {"key": 17, "modifiers": ["control", "command"]},
        "app": "file:///Applications/Preview.app/"})"));
    EXPECT_EQ(actionRefFromJSON(toJSON(full)), full);
}

TEST(ActionRefJSON, ReadsBothSlashForms) {
    const ActionRef read = json::parse(R"({"appID": "openapps", "optionID": "app",
        "app": "file:\/\/\/Applications\/My%20App.app\/"})")
                               .get<ActionRef>();
    ASSERT_TRUE(read.app);
    EXPECT_EQ(read.app->absoluteString(), "file:///Applications/My%20App.app/");
    EXPECT_EQ(read.app->path(), "/Applications/My App.app");
}

TEST(ActionRefJSON, DamagedExtrasAreDroppedNotFatal) {
    const char* texts[] = {
        R"({"appID": "openapps", "optionID": "app", "app": 42})",
        R"({"appID": "openapps", "optionID": "app", "app": ""})",
        R"({"appID": "openapps", "optionID": "app", "app": null})",
        R"({"appID": "openapps", "optionID": "app", "app": ["file:///A.app"]})",
        R"({"appID": "openapps", "optionID": "app", "shortcut": {"key": 128, "modifiers": []}})",
        R"({"appID": "openapps", "optionID": "app", "shortcut": {"key": 1, "modifiers": ["hyper"]}})",
        R"({"appID": "openapps", "optionID": "app", "shortcut": "⌘K"})",
        R"({"appID": "openapps", "optionID": "app", "shortcut": null, "other": 1})",
    };
    for (const char* text : texts) {
        EXPECT_EQ(actionRefFromJSON(json::parse(text)), (ActionRef{"openapps", "app", {}, {}})) << text;
    }
}

TEST(ActionRefJSON, DamagedShortcutDoesNotCostTheApp) {
    const ActionRef read = actionRefFromJSON(json::parse(
        R"({"appID": "a", "optionID": "b", "shortcut": {"key": -1, "modifiers": []}, "app": "file:///X.app/"})"));
    EXPECT_FALSE(read.shortcut);
    ASSERT_TRUE(read.app);
    EXPECT_EQ(read.app->absoluteString(), "file:///X.app/");
}

TEST(ActionRefJSON, IdsAreRequiredStrings) {
    struct Case {
        const char* text;
        JsonDecodeError::Kind kind;
        const char* key;
    };
    const Case cases[] = {
        {R"({"optionID": "back"})", missing, "appID"},
        {R"({"appID": "browsers"})", missing, "optionID"},
        {R"({"appID": 1, "optionID": "back"})", mismatch, "appID"},
        {R"({"appID": "browsers", "optionID": null})", mismatch, "optionID"},
        {R"("browsers/back")", mismatch, ""},
    };
    for (const Case& c : cases) {
        const JsonDecodeError error = failure([&] { (void)actionRefFromJSON(json::parse(c.text)); });
        EXPECT_EQ(error.kind(), c.kind) << c.text;
        EXPECT_EQ(error.key(), c.key) << c.text;
    }
}

}  // namespace
}  // namespace ostrelle
