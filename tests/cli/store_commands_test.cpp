// The bindings file as the command line lists and edits it. Every command gets --file, so no
// test opens the user's own bindings.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <future>
#include <nlohmann/json.hpp>
#include <regex>
#include <string>
#include <vector>

#include "actions/event_flags.h"
#include "cli/cli_runner.h"
#include "gestures/gesture_catalog.h"
#include "store/bindings_file.h"

namespace ostrelle {
namespace {

using testing::CLIResult;
using Lines = std::vector<std::string>;

// What the command line takes for an application to open.
#ifdef __linux__
constexpr auto applicationKinds = "application bundle or desktop entry";
#else
constexpr auto applicationKinds = "application bundle";
#endif

// A bindings file in a fresh temporary folder, and the command line pointed at it.
struct StoreCLI {
    CLIResult run(Lines arguments) const {
        arguments.insert(arguments.end(), {"--file", file.string()});
        return testing::runCLI(arguments);
    }
    std::vector<GestureBinding> stored() const { return decodeBindingsFile(testing::readText(file)); }

    testing::TemporaryFolder folder;
    std::filesystem::path file = folder / "bindings.json";
};

// "GESTURE APP/OPTION" of every line printed.
Lines listed(const CLIResult& result) {
    Lines found;
    for (const std::string& text : result.outLines()) {
        const auto line = nlohmann::json::parse(text);
        found.push_back(line["gesture"].get<std::string>() + " " + line["action"].get<std::string>());
    }
    return found;
}

GestureBinding binding(char n, const std::string& gesture, const std::string& option, double createdAt) {
    const ActionRef action{"system", option, {}, {}};
    return {std::string("0E4A5C3B-7D2F-4B8E-9A61-3C5D7E9F1A2") + n, Gesture(gesture), action, createdAt};
}

TEST(BindingsCommand, SeedsAMissingFileOnceThenListsItByFingerCountCatalogOrderAndAge) {
    const StoreCLI store;
    const CLIResult first = store.run({"bindings"});
    EXPECT_EQ(first.err,
              "note: " + store.file.string() + " did not exist; started it with the 4 default bindings\n");
    EXPECT_EQ(listed(first), (Lines{"2.restTap.left browsers/back", "2.restTap.right browsers/forward",
                                    "3.tap browsers/newtab", "4.tap system/mission"}));
    EXPECT_EQ(store.run({"bindings"}).err, "");  // read, not seeded again
    // Someone who used an earlier version starts with that version's defaults.
    const StoreCLI earlier;
    EXPECT_NE(earlier.run({"bindings", "--launched-before"}).err.find("with the 9 default bindings"),
              std::string::npos);

    // A gesture bound twice (a hand-edited file) lists the older first, and unbinds as a whole.
    testing::writeText(
        store.file,
        encodeBindingsFile({binding('1', "5.click", "copy", 30), binding('2', "3.swipe.up", "cut", 20),
                            binding('3', "3.click", "paste", 10), binding('4', "3.click", "undo", 5)}));
    EXPECT_EQ(listed(store.run({"bindings"})), (Lines{"3.click system/undo", "3.click system/paste",
                                                      "3.swipe.up system/cut", "5.click system/copy"}));
    EXPECT_EQ(store.run({"unbind", "3.click"}).outLines().size(), 2u);
}

TEST(BindingsCommand, SaysWhereTheFileWentWhenItCouldNotKeepIt) {
    // What is said, with FILE and FOLDER for the paths; scratch folder names hold nothing a pattern
    // would read as more than itself.
    const std::vector<std::pair<std::string, std::string>> rows{
        {"{",
         R"(FILE could not be read \(not valid JSON: .*\); moved it to FOLDER/bindings\.corrupt-\d+\.json and started over with the 4 default bindings)"},
        {encodeBindingsFile({binding('1', "9.tap", "copy", 1), binding('2', "4.tap", "nosuchoption", 2)}),
         R"(dropped 2 bindings of FILE whose gesture or action no longer exists; the previous file was copied to FOLDER/bindings\.before-migration-\d+\.json)"},
    };
    for (const auto& [contents, said] : rows) {
        const StoreCLI store;
        testing::writeText(store.file, contents);
        const std::string withFile = std::regex_replace(said, std::regex("FILE"), store.file.string());
        const std::string pattern =
            std::regex_replace(withFile, std::regex("FOLDER"), store.folder.path().string());
        const std::string err = store.run({"bindings"}).err;
        EXPECT_TRUE(std::regex_match(err, std::regex("warning: " + pattern + "\n"))) << err;
    }
}

TEST(BindCommand, RefusesWhatItCannotBindWithStatusTwoAndTouchesNoFile) {
    const StoreCLI store;
    const std::string app = store.folder.path().string();
    const auto shortcut = [](const std::string& text) {
        return Lines{"5.tap", "keyboard/custom", "--shortcut", text};
    };
    const std::string badKey = " is not a number from 0 to 127\n";
    const std::string badList = " (use control, option, shift, command)\n";
    const std::string notAnApp = std::string("--app: not an ") + applicationKinds + ": ";
    const std::vector<std::pair<Lines, std::string>> rows{
        {{"3.tapp", "browsers/back"}, R"(unknown gesture "3.tapp" (closest: 3.tap, )"},
        {{"3.tap", "sytem/mission"}, R"(unknown action "sytem/mission" (closest: system/mission, )"},
        {{"3.tap", "newtab"}, R"(unknown action "newtab" (closest: )"},
        {{"3.restRemove", "browsers/back"}, "gesture \"3.restRemove\" is not enabled and cannot be bound\n"},
        {{"3.custom.9B2E6F10-44A7-4C1D-8E3B-5F6A7B8C9D0E", "browsers/back"},
         "custom gestures are drawn in the application; the command line binds built-in gestures only\n"},
        {{"5.tap", "keyboard/custom"}, "keyboard/custom needs --shortcut KEY:MODS\n"},
        {{"5.tap", "system/copy", "--shortcut", "17"},
         "--shortcut is only for keyboard/custom, not system/copy\n"},
        {shortcut("128:command"), "--shortcut: key code \"128\"" + badKey},
        {shortcut("1K"), "--shortcut: key code \"1K\"" + badKey},
        {shortcut("17:hyper"), "--shortcut: unknown modifier \"hyper\"" + badList},
        {shortcut("122:control,,command"),
         "--shortcut: empty item in modifier list \"control,,command\"" + badList},
        {shortcut("17:command,"), "--shortcut: empty item in modifier list \"command,\"" + badList},
        {{"5.tap", "openapps/app"}, "openapps/app needs --app PATH\n"},
        {{"5.tap", "openapps/app", "--app", app + "/No.app"},
         "--app: no such file or folder: " + app + "/No.app\n"},
        {{"5.tap", "system/copy", "--app", app}, "--app is only for openapps/app, not system/copy\n"},
        {{"5.tap", "openapps/app", "--app", app}, notAnApp + app + "\n"},  // a plain folder
        {{"5.tap", "openapps/app", "--app", app + "/notes.txt"}, notAnApp + app + "/notes.txt\n"},
        {{"5.tap", "openapps/app", "--app", app + "/Broken.desktop"}, notAnApp + app + "/Broken.desktop\n"},
    };
    testing::writeText(store.folder / "notes.txt", "not an app");
    testing::writeText(store.folder / "Broken.desktop",
                       "[Desktop Entry]\nType=Link\nURL=https://example.com\n");
    for (const auto& [tail, error] : rows) {
        Lines arguments{"bind"};
        arguments.insert(arguments.end(), tail.begin(), tail.end());
        const CLIResult result = store.run(arguments);
        EXPECT_EQ(result.status, 2) << error;
        EXPECT_TRUE(result.err.starts_with("error: " + error)) << result.err;
        EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
    }
    EXPECT_FALSE(std::filesystem::exists(store.file));
}

TEST(BindCommand, StoresShortcutsAsGiven) {
    const std::vector<std::pair<std::string, KeyShortcut>> shortcuts{
        {"49", {49, 0}},
        {"122:", {122, 0}},  // as a script that joins an empty list of modifiers writes it
        {"127:command,control,command", {127, EventFlag::control | EventFlag::command}},
    };
    for (const auto& [text, shortcut] : shortcuts) {
        const StoreCLI store;
        ASSERT_EQ(store.run({"bind", "5.tap", "keyboard/custom", "--shortcut", text}).status, 0) << text;
        EXPECT_EQ(store.stored().back().action.shortcut, shortcut) << text;
    }
}

// Each row: what --app names, and the end of the URL stored for it; the summary names the app
// until it is gone.
TEST(BindCommand, StoresAnAppAsItsFileURLAndNamesItInTheSummaryUntilItIsGone) {
    std::vector<std::array<std::string, 3>> rows{{"Some Tool.app/", "Some%20Tool.app/", "Open Some Tool"},
                                                 {"Some.app", "Some.app/", "Open Some"}};
#ifdef __linux__
    rows.push_back({"editor.desktop", "editor.desktop", "Open Text Editor"});
#endif
    for (const auto& [path, url, summary] : rows) {
        const StoreCLI store;
        std::filesystem::create_directory(store.folder / "Some Tool.app");
        std::filesystem::create_directory(store.folder / "Some.app");
        testing::writeText(store.folder / "editor.desktop",
                           "[Desktop Entry]\nType=Application\nName=Text Editor\nExec=true %F\n");
        const CLIResult bound =
            store.run({"bind", "5.tap", "openapps/app", "--app", (store.folder / path).string()});
        ASSERT_EQ(bound.status, 0) << path << ": " << bound.err;
        EXPECT_EQ(nlohmann::json::parse(bound.out)["summary"], summary);
        ASSERT_TRUE(store.stored().back().action.app);
        EXPECT_EQ(store.stored().back().action.app->absoluteString(),
                  "file://" + store.folder.path().string() + "/" + url);

        std::filesystem::remove(store.folder / path);
        EXPECT_EQ(store.run({"bind", "5.tap", "system/copy"}).err,
                  "error: 5.tap is already bound to openapps/app (Open an app); unbind it first\n");
    }
}

TEST(BindCommand, AddsABindingUntilUnbindRemovesItAndRefusesTakenOrFreeGesturesWithStatusOne) {
    const StoreCLI store;
    const CLIResult bound = store.run({"bind", "3.swipe.up", "browsers/reload"});
    ASSERT_EQ(bound.status, 0) << bound.err;
    EXPECT_EQ(bound.outLines(),
              Lines{R"({"fingers": 3, "gesture": "3.swipe.up", "name": "Three-finger swipe up", )"
                    R"("action": "browsers/reload", "summary": "Reload Page", "id": ")" +
                    store.stored().back().id + R"("})"});

    const std::string before = testing::readText(store.file);
    const CLIResult taken = store.run({"bind", "3.tap", "system/copy"});
    EXPECT_EQ(taken.status, 1);
    EXPECT_EQ(taken.err,
              "error: 3.tap is already bound to browsers/newtab (Open new tab); unbind it first\n");
    EXPECT_EQ(testing::readText(store.file), before);

    EXPECT_EQ(listed(store.run({"unbind", "3.tap"})), Lines{"3.tap browsers/newtab"});
    EXPECT_EQ(store.stored().size(), 4u);
    const CLIResult free = store.run({"unbind", "3.tap"});
    EXPECT_EQ(free.status, 1);
    EXPECT_EQ(free.err, "error: 3.tap is not bound\n");
}

TEST(BindCommand, TwentyAtOnceKeepEveryBinding) {
    const StoreCLI store;
    ASSERT_EQ(store.run({"bindings"}).status, 0);  // the four defaults
    constexpr std::size_t writers = 20;
    const std::vector<GestureBinding> defaults = store.stored();
    std::vector<std::string> free;
    for (const Gesture& gesture : GestureCatalog::all()) {
        const auto bound = [&](const GestureBinding& b) { return b.gesture.id == gesture.id; };
        if (std::ranges::none_of(defaults, bound) && free.size() < writers) free.push_back(gesture.id);
    }
    ASSERT_EQ(free.size(), writers);

    std::vector<std::future<CLIResult>> runs;
    for (const std::string& gesture : free)
        runs.push_back(std::async(std::launch::async, [&store, gesture] {
            return store.run({"bind", gesture, "system/mission"});
        }));
    for (auto& run : runs) EXPECT_EQ(run.get().status, 0);
    std::vector<std::string> kept;
    for (const GestureBinding& binding : store.stored()) kept.push_back(binding.gesture.id);
    for (const std::string& gesture : free)
        EXPECT_NE(std::find(kept.begin(), kept.end(), gesture), kept.end()) << gesture;
    EXPECT_EQ(kept.size(), writers + 4);
}

}  // namespace
}  // namespace ostrelle
