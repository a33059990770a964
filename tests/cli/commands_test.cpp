// The commands that read no file of the user's: help, bad usage, and the catalogs as the command
// line prints them, one JSON object per line with members that have no value left out. What the
// catalogs hold is pinned by the core's own tests.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "cli/cli_runner.h"
#include "testing/temporary_folder.h"

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

#if defined(__linux__)
// A private GSettings schema with just GNOME's tap-to-click key (off by default), and the key-file
// back end holding it on: GSettings read as on a GNOME desktop, without its files.
Lines gnomeTappingEnvironment(const testing::ScratchHome& home) {
    const std::filesystem::path schemas = home.temporaryFolder() / "schemas";
    const std::filesystem::path keyfile = *home.lookup()("XDG_CONFIG_HOME") + "/glib-2.0/settings/keyfile";
    std::filesystem::create_directories(schemas);
    std::filesystem::create_directories(keyfile.parent_path());
    testing::writeText(schemas / "org.gnome.desktop.peripherals.touchpad.gschema.xml",
                       R"(<schemalist><schema id="org.gnome.desktop.peripherals.touchpad" )"
                       R"(path="/org/gnome/desktop/peripherals/touchpad/"><key name="tap-to-click" type="b">)"
                       R"(<default>false</default></key></schema></schemalist>)");
    EXPECT_EQ(std::system(("glib-compile-schemas '" + schemas.string() + "'").c_str()), 0);
    testing::writeText(keyfile, "[org/gnome/desktop/peripherals/touchpad]\ntap-to-click=true\n");
    return {"XDG_CURRENT_DESKTOP=ubuntu:GNOME", "GSETTINGS_BACKEND=keyfile",
            "GSETTINGS_SCHEMA_DIR=" + schemas.string()};
}

TEST(DescribeCommand, NamesTheClashWithTheDesktopOnlyWhereThereIsOne) {
    const testing::ScratchHome kdeHome;
    testing::writeText(*kdeHome.lookup()("XDG_CONFIG_HOME") + "/kcminputrc",
                       "[Libinput][1739][52804][SYNA2B46:00 06CB:CE44 Touchpad]\nTapToClick=true\n");
    const Lines kde{"XDG_CURRENT_DESKTOP=KDE"};
    EXPECT_EQ(
        runCLI({"describe", "4.swipe.up"}, "", kdeHome, {}, kde).out,
        R"({"id": "4.swipe.up", "name": "Four-finger swipe up", "hint": "Slide four fingers up in one motion.", )"
        R"("fingers": 4, "sortKey": 27, "enabled": true, "conflict": "KDE Plasma opens the Overview with a )"
        R"(four-finger swipe up (System Settings › Desktop Effects).", "settings": "Desktop Effects"})"
        "\n");
    const testing::ScratchHome gnomeHome;
    const Lines gnome = gnomeTappingEnvironment(gnomeHome);
    const struct {
        const char* name;
        const char* id;
        const testing::ScratchHome& home;
        Lines environment;
        std::string conflict;  // "": none
        std::string settings;  // "": none
    } rows[] = {
        {"KDE Plasma's tap to click from kcminputrc", "3.restTap.between", kdeHome, kde,
         "With tap to click on in KDE Plasma (System Settings › Touchpad), the tapping finger also clicks.",
         "Touchpad"},
        {"no kcminputrc", "3.restTap.between", testing::guardedHome(), kde, "", ""},
        {"GNOME's tap to click from GSettings", "3.restTap.left", gnomeHome, gnome,
         "With tap to click on in GNOME (Settings › Mouse & Touchpad), the tapping finger also clicks.",
         "Mouse & Touchpad"},
    };
    for (const auto& row : rows) {
        const testing::CLIResult result = runCLI({"describe", row.id}, "", row.home, {}, row.environment);
        EXPECT_EQ(result.err, "") << row.name;
        const auto line = nlohmann::json::parse(result.out);
        EXPECT_EQ(line.value("conflict", ""), row.conflict) << row.name;
        EXPECT_EQ(line.value("settings", ""), row.settings) << row.name;
    }
    const auto free = nlohmann::json::parse(runCLI({"describe", "3.restRemove"}).out);
    EXPECT_FALSE(free.contains("conflict")) << free;
    EXPECT_EQ(free["enabled"], false);
}
#endif

}  // namespace
}  // namespace ostrelle
