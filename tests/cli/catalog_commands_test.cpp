#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "actions/action_catalog.h"
#include "cli/cli_runner.h"

namespace ostrelle {
namespace {

using testing::CLIResult;
using testing::runCLI;
using Lines = std::vector<std::string>;

// "app/option" of every line, in output order.
Lines options(const CLIResult& result) {
    Lines found;
    for (const std::string& text : result.outLines()) {
        const auto line = nlohmann::json::parse(text);
        found.push_back(line["app"].get<std::string>() + "/" + line["option"].get<std::string>());
    }
    return found;
}

TEST(ActionsCommand, PrintsTheCatalogWithNotesOnlyWhereThereAreAny) {
    const CLIResult result = runCLI({"actions"});
    ASSERT_EQ(result.status, 0) << result.err;
    const Lines lines = result.outLines();
    std::size_t total = 0;
    for (const AppActions& app : ActionCatalog::apps()) total += app.options.size();
    ASSERT_EQ(lines.size(), total);
    EXPECT_EQ(lines.front(), R"({"app": "browsers", "option": "right", "label": "Switch tabs right", "keys": "⌃⇥"})");
    EXPECT_EQ(lines[10], R"({"app": "browsers", "option": "linktab", "label": "Open link in new tab", "keys": "⌘-click", )"
                         R"("note": "Opens the link under the pointer, so point at a link before the gesture."})");
    EXPECT_EQ(lines.back(), R"({"app": "openapps", "option": "app", "label": "Open an app", "keys": ""})");
}

TEST(ActionsCommand, SearchesNamesLabelsAndKeysIgnoringCaseAndAccents) {
    const Lines zoom{"browsers/zoomin", "browsers/zoomout"};
    EXPECT_EQ(options(runCLI({"actions", "--search", "zoom"})), zoom);
    EXPECT_EQ(options(runCLI({"actions", "--search", "  ZOÓM\t"})), zoom);

    // Safari appears only in notes, which the search leaves alone.
    for (const char* query : {"safari", "Sàfari"}) {
        const CLIResult none = runCLI({"actions", "--search", query});
        EXPECT_EQ(none.status, 0);
        EXPECT_EQ(none.out, "") << query;
    }

    // A group whose name matches keeps all its options.
    const Lines system = options(runCLI({"actions", "--search", "MÀCOS"}));
    ASSERT_EQ(system.size(), 34u);
    EXPECT_EQ(system.front(), "system/mission");

    EXPECT_EQ(options(runCLI({"actions", "--search", "⌘T"})),
              (Lines{"browsers/newtab", "browsers/reopen", "tabs/newtab"}));
    EXPECT_EQ(runCLI({"actions", "--search", ""}).outLines().size(), runCLI({"actions"}).outLines().size());
    EXPECT_EQ(runCLI({"actions", "--search"}).status, 2);
    EXPECT_EQ(runCLI({"actions", "zoom"}).status, 2);
}

TEST(DescribeCommand, GivesTheGestureAndItsClashWithTheSystemDefaults) {
    // Nothing stored here says otherwise, so four-finger swipes belong to Mission Control.
    const CLIResult clash = runCLI({"describe", "4.swipe.up"});
    ASSERT_EQ(clash.status, 0) << clash.err;
    EXPECT_EQ(clash.outLines(),
              Lines{R"({"id": "4.swipe.up", "name": "Four-finger swipe up", "hint": "Slide four fingers up in one motion.", )"
                    R"("fingers": 4, "sortKey": 27, "enabled": true, )"
                    R"("conflict": "Four-finger swipes open Mission Control or App Exposé.", "settings": "Trackpad"})"});

    const auto pointer = nlohmann::json::parse(runCLI({"describe", "2.restSwipe.up.left"}).out);
    EXPECT_EQ(pointer["conflict"], "The swiping finger also moves the pointer.");
    EXPECT_FALSE(pointer.contains("settings"));

    const auto free = nlohmann::json::parse(runCLI({"describe", "3.swipe.up"}).out);
    EXPECT_FALSE(free.contains("conflict"));
    EXPECT_EQ(free["enabled"], true);

    const auto disabled = nlohmann::json::parse(runCLI({"describe", "3.restRemove"}).out);
    EXPECT_EQ(disabled["name"], "Hold three, lift all but one");
    EXPECT_EQ(disabled["enabled"], false);
}

TEST(DescribeCommand, RefusesUnknownGesturesNamingTheClosest) {
    const CLIResult unknown = runCLI({"describe", "4.swipe.upp"});
    EXPECT_EQ(unknown.status, 2);
    EXPECT_EQ(unknown.out, "");
    EXPECT_TRUE(unknown.err.starts_with(R"(error: unknown gesture "4.swipe.upp" (closest: 4.swipe.up, )")) << unknown.err;

    EXPECT_EQ(runCLI({"describe"}).status, 2);
    EXPECT_EQ(runCLI({"describe", "3.tap", "4.tap"}).status, 2);
}

TEST(CLIDispatcher, ListsTheStoreAndCatalogCommands) {
    const CLIResult help = runCLI({"--help"});
    for (const char* command : {"\n  describe GESTURE\n", "\n  actions [--search QUERY]\n",
                                "\n  bindings [--file PATH] [--launched-before]\n", "\n  bind GESTURE APPID/OPTIONID ",
                                "\n  unbind GESTURE [--file PATH]\n"}) {
        EXPECT_NE(help.out.find(command), std::string::npos) << command;
    }
}

}  // namespace
}  // namespace ostrelle
