// The commands that read no file of the user's: help, bad usage, and the catalogs as the command
// line prints them, one JSON object per line with members that have no value left out. What the
// catalogs hold is pinned by the core's own tests.
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "cli/cli_runner.h"

namespace ostrelle {
namespace {

using testing::CLIResult;
using testing::runCLI;
using Lines = std::vector<std::string>;

TEST(CLIUsage, BadArgumentsEndWithStatusTwoTheProblemAndTheUsage) {
    const std::vector<std::pair<Lines, std::string>> rows{
        {{}, "no command given"},
        {{"frobnicate"}, "unknown command \"frobnicate\""},
        {{"gestures", "extra"}, "gestures takes no arguments"},
        {{"describe"}, "missing GESTURE"},
        {{"actions", "zoom"}, "unexpected argument \"zoom\""},
        {{"actions", "--search"}, "--search needs a value"},
        {{"bindings", "--verbose"}, "unknown option --verbose"},
        {{"bindings", "--file", "/dev/null/a", "--file", "/dev/null/b"}, "--file given twice"},
        {{"replay"}, "no recording given"},
        {{"replay", "a.jsonl", "--custom"}, "--custom needs a file"},
        {{"replay", "a.jsonl", "--device"}, "--device needs an evemu description file"},
        {{"replay", "a.jsonl", "--capture"},
         "--capture, --untrusted, --front-app and --settings need --bindings"},
        {{"replay", "a.jsonl", "--bindings", "b", "--settings"}, "--settings needs KEY=VALUE"},
        {{"replay", "a.jsonl", "--bindings", "b", "--custom", "x"},
         "--custom and --recording-shapes cannot be used with --bindings"},
    };
    for (const auto& [arguments, problem] : rows) {
        const CLIResult result = runCLI(arguments);
        EXPECT_EQ(result.status, 2) << problem;
        EXPECT_EQ(result.out, "") << problem;
        EXPECT_TRUE(result.err.starts_with("error: " + problem + "\nusage: ostrelle-cli ")) << result.err;
    }
}

TEST(CLIUsage, HelpGoesToStandardOutput) {
    const std::string overview = "usage: ostrelle-cli COMMAND [ARGUMENTS]\n";
    const std::vector<std::pair<Lines, std::string>> rows{
        {{"--help"}, overview},
        {{"bindings", "--file", "/dev/null/x", "-h"},
         "usage: ostrelle-cli bindings [--file PATH] [--launched-before]\n"},
        {{"replay", "--help"},
         "usage: ostrelle-cli replay FILE [--device DESC] [--trace] [--custom SHAPES.json]"},
        {{"help"}, overview},
    };
    for (const auto& [arguments, usage] : rows) {
        const CLIResult help = runCLI(arguments);
        EXPECT_EQ(help.status, 0) << usage;
        EXPECT_TRUE(help.out.starts_with(usage)) << help.out;
    }
}

TEST(CatalogCommands, PrintGesturesAndActionsOnePerLine) {
    const Lines gestures = runCLI({"gestures"}).outLines();
    EXPECT_TRUE(
        gestures.at(0).ends_with(R"(", "fingers": 2, "group": "two", "sortKey": 0, "enabled": true})"));
    const Lines actions = runCLI({"actions"}).outLines();
#if defined(__linux__)
    // A Linux desktop gets Linux chords under the catalog's ids.
    const std::string first =
        R"({"app": "browsers", "option": "right", "label": "Switch tabs right", "keys": "Ctrl+Tab"})";
    const std::string linkTab =
        R"({"app": "browsers", "option": "linktab", "label": "Open link in new tab", "keys": "Ctrl+click", )";
#else
    const std::string first =
        R"({"app": "browsers", "option": "right", "label": "Switch tabs right", "keys": "⌃⇥"})";
    const std::string linkTab =
        R"({"app": "browsers", "option": "linktab", "label": "Open link in new tab", "keys": "⌘-click", )";
#endif
    EXPECT_EQ(actions.at(0), first);
    EXPECT_NE(
        std::ranges::find(
            actions,
            linkTab +
                R"("note": "Opens the link under the pointer, so point at a link before the gesture."})"),
        actions.end());
    EXPECT_EQ(runCLI({"actions", "--search", "ZOOM IN"}).outLines().size(), 1u);
}

TEST(DescribeCommand, NamesTheClashWithTheSystemOnlyWhereThereIsOne) {
    EXPECT_EQ(
        runCLI({"describe", "4.swipe.up"}).out,
        R"({"id": "4.swipe.up", "name": "Four-finger swipe up", "hint": "Slide four fingers up in one motion.", )"
        R"("fingers": 4, "sortKey": 27, "enabled": true, )"
        R"("conflict": "Four-finger swipes open Mission Control or App Exposé.", "settings": "Trackpad"})"
        "\n");
    const auto pointer = nlohmann::json::parse(runCLI({"describe", "2.restSwipe.up.left"}).out);
    EXPECT_TRUE(pointer.contains("conflict") && !pointer.contains("settings")) << pointer;
    const auto free = nlohmann::json::parse(runCLI({"describe", "3.restRemove"}).out);
    EXPECT_FALSE(free.contains("conflict")) << free;
    EXPECT_EQ(free["enabled"], false);

    const testing::CLIResult unknown = runCLI({"describe", "4.swipe.upp"});
    EXPECT_EQ(unknown.status, 2);
    EXPECT_TRUE(unknown.err.starts_with(R"(error: unknown gesture "4.swipe.upp" (closest: 4.swipe.up, )"))
        << unknown.err;
}

}  // namespace
}  // namespace ostrelle
