#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "actions/event_flags.h"
#include "cli/store_cli.h"

namespace ostrelle {
namespace {

using testing::CLIResult;
using testing::StoreCLI;
using Lines = std::vector<std::string>;

// Gives the store the four first-launch bindings (3.tap is browsers/newtab among them).
void seed(const StoreCLI& store) {
    ASSERT_EQ(store.run({"bindings"}).status, 0);
}

TEST(BindCommand, AddsTheBindingPrintsItAndKeepsItOnDisk) {
    const StoreCLI store;
    const CLIResult bound = store.run({"bind", "3.swipe.up", "browsers/reload"});
    ASSERT_EQ(bound.status, 0) << bound.err;
    // The first use of a file seeds it, and says so, before the new binding joins.
    EXPECT_EQ(bound.err,
              "note: " + store.file().string() + " did not exist; started it with the 4 default bindings\n");

    const auto saved = store.stored();
    ASSERT_EQ(saved.size(), 5u);
    const GestureBinding& added = saved.back();
    EXPECT_EQ(added.gesture, Gesture("3.swipe.up"));
    EXPECT_EQ(added.action, (ActionRef{"browsers", "reload", {}, {}}));
    const std::string expected =
        R"({"fingers": 3, "gesture": "3.swipe.up", "name": "Three-finger swipe up", )"
        R"("action": "browsers/reload", "summary": "Reload Page", "id": ")" +
        added.id + R"("})";
    EXPECT_EQ(bound.outLines(), Lines{expected});

    const Lines listed = store.run({"bindings"}).outLines();
    ASSERT_EQ(listed.size(), 5u);
    EXPECT_EQ(listed[3], expected);  // after 3.tap, which comes first in the catalog
}

TEST(BindCommand, RefusesAGestureThatIsAlreadyBoundAndChangesNothing) {
    const StoreCLI store;
    seed(store);
    const std::string before = testing::readText(store.file());
    const CLIResult refused = store.run({"bind", "3.tap", "system/copy"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.out, "");
    EXPECT_EQ(refused.err,
              "error: 3.tap is already bound to browsers/newtab (Open new tab); unbind it first\n");
    EXPECT_EQ(testing::readText(store.file()), before);
}

TEST(BindCommand, RefusesUnknownIdsNamingTheClosestAndTouchesNoFile) {
    struct Row {
        const char* name;
        Lines arguments;
        std::string error;
    };
    const std::vector<Row> rows{
        {"typo in gesture",
         {"bind", "3.tapp", "browsers/back"},
         R"(error: unknown gesture "3.tapp" (closest: 3.tap, )"},
        {"gesture case",
         {"bind", "4.Swipe.Up", "browsers/back"},
         R"(error: unknown gesture "4.Swipe.Up" (closest: 4.swipe.up, )"},
        {"typo in option",
         {"bind", "3.tap", "browsers/bakc"},
         R"(error: unknown action "browsers/bakc" (closest: browsers/back, )"},
        {"typo in group",
         {"bind", "3.tap", "sytem/mission"},
         R"(error: unknown action "sytem/mission" (closest: system/mission, )"},
        {"no slash", {"bind", "3.tap", "newtab"}, R"(error: unknown action "newtab" (closest: )"},
        {"known but not enabled",
         {"bind", "3.restRemove", "browsers/back"},
         "error: gesture \"3.restRemove\" is not enabled and cannot be bound\n"},
        {"drawn shape",
         {"bind", "3.custom.9B2E6F10-44A7-4C1D-8E3B-5F6A7B8C9D0E", "browsers/back"},
         "error: custom gestures are drawn in the application; the command line binds built-in gestures "
         "only\n"},
        {"missing action",
         {"bind", "3.tap"},
         "error: missing APPID/OPTIONID\nusage: ostrelle-cli bind GESTURE "},
    };
    for (const Row& row : rows) {
        const StoreCLI store;
        const CLIResult result = store.run(row.arguments);
        EXPECT_EQ(result.status, 2) << row.name;
        EXPECT_TRUE(result.err.starts_with(row.error)) << row.name << ": " << result.err;
        EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'),
                  row.name == std::string("missing action") ? 2 : 1)
            << row.name;
        EXPECT_FALSE(std::filesystem::exists(store.file())) << row.name;
    }
}

TEST(BindCommand, TakesAShortcutOnlyForTheCustomShortcutOption) {
    const StoreCLI store;
    seed(store);
    const CLIResult bound =
        store.run({"bind", "4.click", "keyboard/custom", "--shortcut", "17:command,control,command"});
    ASSERT_EQ(bound.status, 0) << bound.err;
    const auto saved = store.stored();
    ASSERT_EQ(saved.back().action.shortcut, (KeyShortcut{17, 0x40000 | 0x100000}));
    EXPECT_NE(testing::readText(store.file()).find(R"("modifiers" : [
          "control",
          "command"
        ])"),
              std::string::npos);
    const auto line = nlohmann::json::parse(bound.outLines().at(0));
    EXPECT_EQ(line["action"], "keyboard/custom");
    EXPECT_TRUE(line["summary"].get<std::string>().starts_with("Press ⌃⌘")) << line["summary"];

    const std::vector<std::pair<Lines, std::string>> refused{
        {{"keyboard/custom"}, "error: keyboard/custom needs --shortcut KEY:MODS\n"},
        {{"browsers/back", "--shortcut", "17:command"},
         "error: --shortcut is only for keyboard/custom, not browsers/back\n"},
    };
    const std::string before = testing::readText(store.file());
    for (const auto& [tail, error] : refused) {
        Lines arguments{"bind", "5.tap"};
        arguments.insert(arguments.end(), tail.begin(), tail.end());
        const CLIResult result = store.run(arguments);
        EXPECT_EQ(result.status, 2) << tail.back();
        EXPECT_TRUE(result.err.starts_with(error)) << result.err;
    }
    EXPECT_EQ(testing::readText(store.file()), before);
}

TEST(BindCommand, ReadsTheShortcutAsAKeyCodeAndAModifierList) {
    struct Row {
        const char* name;
        std::string shortcut;
        std::optional<KeyShortcut> stored;
        std::string error;  // when nothing is stored
    };
    const std::string hint = " (use control, option, shift, command)\n";
    const std::vector<Row> rows{
        {"bare key", "49", KeyShortcut{49, 0}, ""},
        {"empty modifier list", "122:", KeyShortcut{122, 0}, ""},
        {"highest key, one modifier", "127:control", KeyShortcut{127, EventFlag::control}, ""},
        {"repeated modifier", "0:command,control,command",
         KeyShortcut{0, EventFlag::control | EventFlag::command}, ""},
        {"key past seven bits",
         "128:command",
         {},
         "error: --shortcut: key code \"128\" is not a number from 0 to 127\n"},
        {"negative key", "-1", {}, "error: --shortcut: key code \"-1\" is not a number from 0 to 127\n"},
        {"key by name", "K:command", {}, "error: --shortcut: key code \"K\" is not a number from 0 to 127\n"},
        {"no key", ":command", {}, "error: --shortcut: key code \"\" is not a number from 0 to 127\n"},
        {"unknown modifier", "17:hyper", {}, "error: --shortcut: unknown modifier \"hyper\"" + hint},
        {"empty item inside",
         "122:control,,command",
         {},
         "error: --shortcut: empty item in modifier list \"control,,command\"" + hint},
        {"trailing comma",
         "17:command,",
         {},
         "error: --shortcut: empty item in modifier list \"command,\"" + hint},
        {"lone comma", "17:,", {}, "error: --shortcut: empty item in modifier list \",\"" + hint},
    };
    for (const Row& row : rows) {
        const StoreCLI store;
        const CLIResult result = store.run({"bind", "5.tap", "keyboard/custom", "--shortcut", row.shortcut});
        if (row.stored) {
            ASSERT_EQ(result.status, 0) << row.name << ": " << result.err;
            EXPECT_EQ(store.stored().back().action.shortcut, row.stored) << row.name;
        } else {
            EXPECT_EQ(result.status, 2) << row.name;
            EXPECT_EQ(result.err, row.error) << row.name;
            EXPECT_FALSE(std::filesystem::exists(store.file())) << row.name;
        }
    }
}

TEST(BindCommand, TakesAnAppOnlyForTheChooseAppOptionAndStoresItsFileURL) {
    const StoreCLI store;
    seed(store);
    const auto app = store.folder() / "Preview Tool.app";
    std::filesystem::create_directory(app);
    const CLIResult bound = store.run({"bind", "5.tap", "openapps/app", "--app", app.string() + "/"});
    ASSERT_EQ(bound.status, 0) << bound.err;
    ASSERT_TRUE(store.stored().back().action.app);
    EXPECT_EQ(store.stored().back().action.app->absoluteString(),
              "file://" + store.folder().string() + "/Preview%20Tool.app/");

    const std::vector<std::pair<Lines, std::string>> refused{
        {{"openapps/app"}, "error: openapps/app needs --app PATH\n"},
        {{"openapps/app", "--app", (store.folder() / "Missing.app").string()},
         "error: --app: no such file or folder: " + (store.folder() / "Missing.app").string() + "\n"},
        {{"system/mission", "--app", app.string()},
         "error: --app is only for openapps/app, not system/mission\n"},
        {{"openapps/app", "--app", ""}, "error: --app: no such file or folder: \n"},
        {{"openapps/app", "--app", app.string(), "--shortcut", "1"},
         "error: --shortcut is only for keyboard/custom, not openapps/app\n"},
    };
    for (const auto& [tail, error] : refused) {
        Lines arguments{"bind", "5.click"};
        arguments.insert(arguments.end(), tail.begin(), tail.end());
        const CLIResult result = store.run(arguments);
        EXPECT_EQ(result.status, 2) << tail.front();
        EXPECT_EQ(result.err, error);
    }
    EXPECT_EQ(store.stored().size(), 5u);
}

TEST(UnbindCommand, RemovesTheBindingOnceThenRefuses) {
    const StoreCLI store;
    seed(store);
    const std::string id = store.stored()[2].id;
    const CLIResult removed = store.run({"unbind", "3.tap"});
    ASSERT_EQ(removed.status, 0) << removed.err;
    EXPECT_EQ(removed.err, "");
    EXPECT_EQ(
        removed.outLines(),
        Lines{
            R"({"fingers": 3, "gesture": "3.tap", "name": "Three-finger tap", "action": "browsers/newtab", )"
            R"("summary": "Open new tab", "id": ")" +
            id + R"("})"});
    EXPECT_EQ(store.stored().size(), 3u);
    EXPECT_EQ(store.run({"bindings"}).outLines().size(), 3u);

    const CLIResult again = store.run({"unbind", "3.tap"});
    EXPECT_EQ(again.status, 1);
    EXPECT_EQ(again.err, "error: 3.tap is not bound\n");

    const CLIResult typo = store.run({"unbind", "4.tapp"});
    EXPECT_EQ(typo.status, 2);
    EXPECT_TRUE(typo.err.starts_with(R"(error: unknown gesture "4.tapp" (closest: 4.tap, )")) << typo.err;

    // Freed, the gesture can be bound again.
    EXPECT_EQ(store.run({"bind", "3.tap", "system/copy"}).status, 0);
}

}  // namespace
}  // namespace ostrelle
