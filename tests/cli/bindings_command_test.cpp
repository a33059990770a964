#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <regex>
#include <string>
#include <vector>

#include "cli/store_cli.h"

namespace ostrelle {
namespace {

using testing::CLIResult;
using testing::StoreCLI;
using Lines = std::vector<std::string>;

std::string line(int fingers, const std::string& gesture, const std::string& name, const std::string& action,
                 const std::string& summary, const std::string& id) {
    return R"({"fingers": )" + std::to_string(fingers) + R"(, "gesture": ")" + gesture + R"(", "name": ")" + name +
           R"(", "action": ")" + action + R"(", "summary": ")" + summary + R"(", "id": ")" + id + R"("})";
}

GestureBinding binding(const std::string& id, const std::string& gesture, const std::string& app,
                       const std::string& option, double createdAt) {
    return {id, Gesture(gesture), ActionRef{app, option, {}, {}}, createdAt};
}

constexpr auto idA = "0E4A5C3B-7D2F-4B8E-9A61-3C5D7E9F1A2B";
constexpr auto idB = "5D1E2F30-6A7B-4C8D-9E0F-1A2B3C4D5E6F";
constexpr auto idC = "9B2E6F10-44A7-4C1D-8E3B-5F6A7B8C9D0E";
constexpr auto idD = "1A2B3C4D-5E6F-4A7B-8C9D-0E1F2A3B4C5D";

TEST(BindingsCommand, SeedsAMissingFileOnceAndListsItGroupedByFingers) {
    const StoreCLI store;
    const CLIResult first = store.run({"bindings"});
    ASSERT_EQ(first.status, 0) << first.err;
    EXPECT_EQ(first.err, "note: " + store.file().string() + " did not exist; started it with the 4 default bindings\n");

    const auto saved = store.stored();
    ASSERT_EQ(saved.size(), 4u);
    const Lines expected{
        line(2, "2.restTap.left", "Hold one, tap another on its left", "browsers/back", "Back", saved[0].id),
        line(2, "2.restTap.right", "Hold one, tap another on its right", "browsers/forward", "Forward", saved[1].id),
        line(3, "3.tap", "Three-finger tap", "browsers/newtab", "Open new tab", saved[2].id),
        line(4, "4.tap", "Four-finger tap", "system/mission", "Mission Control", saved[3].id),
    };
    EXPECT_EQ(first.outLines(), expected);

    // The second run reads what the first wrote: same bindings, nothing to tell.
    const CLIResult second = store.run({"bindings", "--launched-before"});
    EXPECT_EQ(second.status, 0);
    EXPECT_EQ(second.err, "");
    EXPECT_EQ(second.outLines(), expected);
}

TEST(BindingsCommand, ListsByFingerCountThenCatalogOrderThenAge) {
    const StoreCLI store;
    const CLIResult seeded = store.run({"bindings", "--launched-before"});
    ASSERT_EQ(seeded.status, 0);
    EXPECT_NE(seeded.err.find("started it with the 9 default bindings"), std::string::npos) << seeded.err;
    Lines gestures;
    for (const std::string& text : seeded.outLines()) gestures.push_back(nlohmann::json::parse(text)["gesture"]);
    EXPECT_EQ(gestures, (Lines{"2.restTap.left", "2.restTap.right", "3.click", "3.tap", "3.restTap.between", "4.tap",
                               "4.swipe.left", "4.swipe.right", "5.tap"}));

    // File order is not list order; a gesture bound twice (a hand-edited file) lists the older first.
    store.write({binding(idA, "5.click", "system", "copy", 30), binding(idB, "3.swipe.up", "system", "cut", 20),
                 binding(idC, "3.click", "system", "paste", 10), binding(idD, "3.click", "system", "undo", 5)});
    EXPECT_EQ(store.run({"bindings"}).outLines(),
              (Lines{line(3, "3.click", "Three-finger click", "system/undo", "Undo", idD),
                     line(3, "3.click", "Three-finger click", "system/paste", "Paste", idC),
                     line(3, "3.swipe.up", "Three-finger swipe up", "system/cut", "Cut", idB),
                     line(5, "5.click", "Five-finger click", "system/copy", "Copy", idA)}));
}

TEST(BindingsCommand, TellsWhereAnUnreadableFileWentAndStartsOver) {
    // A number too large for a double once escaped the reader as another kind of exception.
    const std::string overflow = R"([{"id": ")" + std::string(idA) +
                                 R"(", "gesture": "3.tap", "action": {"appID": "browsers", "optionID": "back"}, )"
                                 R"("createdAt": 1e999}])";
    for (const std::string& contents : {std::string("{"), overflow}) {
        const StoreCLI store;
        testing::writeText(store.file(), contents);
        const CLIResult result = store.run({"bindings"});
        ASSERT_EQ(result.status, 0) << contents;
        EXPECT_EQ(result.outLines().size(), 4u);

        const std::vector<std::string> aside = store.sideFiles();
        ASSERT_EQ(aside.size(), 1u);
        EXPECT_TRUE(std::regex_match(aside[0], std::regex(R"(bindings\.corrupt-\d+\.json)"))) << aside[0];
        EXPECT_EQ(testing::readText(store.folder() / aside[0]), contents);
        const std::string start = "warning: " + store.file().string() + " could not be read (not valid JSON: ";
        EXPECT_TRUE(result.err.starts_with(start)) << result.err;
        EXPECT_TRUE(result.err.ends_with("); moved it to " + (store.folder() / aside[0]).string() +
                                         " and started over with the 4 default bindings\n"))
            << result.err;
        EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1);
    }
}

TEST(BindingsCommand, TellsHowManyBindingsWereDroppedAndWhereTheBackupIs) {
    const StoreCLI store;
    store.write({binding(idA, "9.tap", "browsers", "back", 1), binding(idB, "3.tap", "browsers", "newtab", 2),
                 binding(idC, "4.tap", "browsers", "nosuchoption", 3)});
    const CLIResult result = store.run({"bindings"});
    ASSERT_EQ(result.status, 0);
    EXPECT_EQ(result.outLines(),
              Lines{line(3, "3.tap", "Three-finger tap", "browsers/newtab", "Open new tab", idB)});

    const std::vector<std::string> backups = store.sideFiles();
    ASSERT_EQ(backups.size(), 1u);
    EXPECT_TRUE(std::regex_match(backups[0], std::regex(R"(bindings\.before-migration-\d+\.json)"))) << backups[0];
    EXPECT_EQ(result.err, "warning: dropped 2 bindings of " + store.file().string() +
                              " whose gesture or action no longer exists; the previous file was copied to " +
                              (store.folder() / backups[0]).string() + "\n");
    EXPECT_EQ(store.stored().size(), 1u);
}

TEST(BindingsCommand, RefusesArgumentsItDoesNotTake) {
    const StoreCLI store;
    for (const Lines& arguments : {Lines{"bindings", "extra"}, Lines{"bindings", "--verbose"}}) {
        const CLIResult result = store.run(arguments);
        EXPECT_EQ(result.status, 2) << arguments[1];
        EXPECT_TRUE(result.err.starts_with("error: ")) << result.err;
    }
    EXPECT_EQ(testing::runCLI({"bindings", "--file"}).status, 2);
    EXPECT_FALSE(std::filesystem::exists(store.file()));

    const CLIResult help = testing::runCLI({"bindings", "--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_TRUE(help.out.starts_with("usage: ostrelle-cli bindings [--file PATH] [--launched-before]\n")) << help.out;
}

}  // namespace
}  // namespace ostrelle
