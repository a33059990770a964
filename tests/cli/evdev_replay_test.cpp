// Raw touchpad events replayed by the command line through the frame assembler (each format's
// reading has its own tests). Every real touchpad recording of the evemu-devices collection is
// read whole or refused for want of multitouch axes, fires what its name promises where the
// gestures allow it (one- and two-finger taps and presses are the system's, not ours), and
// scrolls and pointer motion fire nothing.
#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "cli/cli_runner.h"

namespace ostrelle {
namespace {

using Lines = std::vector<std::string>;
using ::testing::AllOf, ::testing::Each, ::testing::HasSubstr, ::testing::SizeIs, ::testing::StartsWith;

const std::filesystem::path recordings =
    std::filesystem::path(OSTRELLE_SOURCE_DIR) / "tests" / "recordings" / "evemu-devices";

enum class Pad { multitouch, semiMultitouch, refused };

struct Row {
    const char* file;
    const char* description;  // for a recording without a header
    Pad pad;
    Lines gestures;
};

const char* const alps = "AlpsPS2 ALPS GlidePoint.desc";
const char* const dualPoint = "AlpsPS2-ALPS-DualPoint-TouchPad.desc";
const char* const synaptics = "SynPS2 Synaptics TouchPad.desc";
const char* const hp = "SynPS2 Synaptics TouchPad.hp8470p.desc";

const std::vector<Row> rows = {
    {"AlpsPS2 ALPS GlidePoint.2-finger-tap.events", nullptr, Pad::semiMultitouch, {}},
    {"AlpsPS2 ALPS GlidePoint.double-tap.events", nullptr, Pad::semiMultitouch, {}},
    {"AlpsPS2 ALPS GlidePoint.right-edge-scroll.events", alps, Pad::semiMultitouch, {}},
    {"AlpsPS2 ALPS GlidePoint.single-tap.events", nullptr, Pad::semiMultitouch, {}},
    {"AlpsPS2-ALPS-DualPoint-TouchPad-non-MT.doubletap.events", nullptr, Pad::refused, {}},
    {"AlpsPS2-ALPS-DualPoint-TouchPad-non-MT.tap.events", nullptr, Pad::refused, {}},
    {"AlpsPS2-ALPS-DualPoint-TouchPad.events", dualPoint, Pad::semiMultitouch, {}},
    // The third finger exists only as BTN_TOOL_TRIPLETAP: a stand-in makes it.
    {"CyPS2 Cypress Trackpad.three_finger_press.events", nullptr, Pad::semiMultitouch, {"3.click"}},
    {"CyPS2 Cypress Trackpad.three_finger_tap.events", nullptr, Pad::semiMultitouch, {"3.tap"}},
    {"CyPS2 Cypress Trackpad.two_finger_press.events", nullptr, Pad::semiMultitouch, {}},
    {"CyPS2 Cypress Trackpad.two_finger_tap.events", nullptr, Pad::semiMultitouch, {}},
    {"ETPS2 Elantech Touchpad.Samsung-700Z3A.events", nullptr, Pad::multitouch, {}},
    {"ETPS2 Elantech Touchpad.events", "ETPS2 Elantech Touchpad.desc", Pad::semiMultitouch, {}},
    {"SynPS2 Synaptics TouchPad-fdo23890.events",
     "SynPS2 Synaptics TouchPad-fdo23890.desc",
     Pad::refused,
     {}},
    {"SynPS2 Synaptics TouchPad-with-scrollbuttons.events", nullptr, Pad::semiMultitouch, {}},
    {"SynPS2 Synaptics TouchPad.button-rpress.events", synaptics, Pad::multitouch, {}},
    {"SynPS2 Synaptics TouchPad.events", synaptics, Pad::multitouch, {}},
    {"SynPS2 Synaptics TouchPad.fdo48777-reproducer.events", synaptics, Pad::multitouch, {}},
    {"SynPS2 Synaptics TouchPad.hp8470p.edge-scroll-horizontal.events", hp, Pad::multitouch, {}},
    {"SynPS2 Synaptics TouchPad.hp8470p.edge-scroll-vertical.events", hp, Pad::multitouch, {}},
    {"SynPS2 Synaptics TouchPad.hp8470p.two-finger-scroll-horizontal.events", hp, Pad::multitouch, {}},
    {"SynPS2 Synaptics TouchPad.hp8470p.two-finger-scroll-vertical.events", hp, Pad::multitouch, {}},
    {"SynPS2 Synaptics TouchPad.leftmove.events", synaptics, Pad::multitouch, {}},
    {"SynPS2 Synaptics TouchPad.two-finger-vert-scroll.events", synaptics, Pad::multitouch, {}},
    // Multitouch protocol A, through mtdev.
    {"bcm5974.three-finger-click.events", nullptr, Pad::multitouch, {"3.click"}},
};

TEST(EvdevReplay, EachRealRecordingIsInTheTableReadsWholeAndFiresWhatItsNamePromises) {
    // Each row's file is opened below, so as many recordings as rows means all of them.
    const std::filesystem::directory_iterator folder(recordings);
    EXPECT_EQ(std::count_if(begin(folder), end(folder),
                            [](const auto& f) { return f.path().extension() == ".events"; }),
              std::ssize(rows));
    for (const Row& row : rows) {
        const std::string file = (recordings / row.file).string();
        Lines arguments{"replay", file};
        if (row.description)
            arguments.insert(arguments.end(), {"--device", (recordings / row.description).string()});
        const testing::ScratchHome home;
        const testing::CLIResult result = testing::runCLI(arguments, "", home);

        Lines gestures;
        for (const std::string& line : result.outLines())
            gestures.push_back(nlohmann::json::parse(line).at("gesture"));
        EXPECT_EQ(gestures, row.gestures) << row.file;
        if (row.pad == Pad::refused) {
            EXPECT_THAT(result.err, AllOf(StartsWith("error: " + file + ": "),
                                          HasSubstr("has no multitouch position axes")))
                << row.file;
        }
        EXPECT_EQ(result.status, row.pad == Pad::refused ? 2 : 0) << row.file << result.err;
        // A semi-multitouch pad is noted once in the log; nothing else is logged.
        const Lines log = home.touched().empty() ? Lines{} : testing::readLines(home.logFile());
        EXPECT_THAT(
            log, AllOf(SizeIs(row.pad == Pad::semiMultitouch ? 1 : 0), Each(HasSubstr("(semi-multitouch)"))))
            << row.file;
    }
}

// Three fingers on a two-slot pad: two slots and BTN_TOOL_TRIPLETAP, lifted 0.1 s later.
std::string threeFingers() {
    const int events[][4] = {{3, 0x2f, 0},  {3, 0x39, 10}, {3, 0x35, 400}, {3, 0x36, 300},
                             {3, 0x2f, 1},  {3, 0x39, 11}, {3, 0x35, 600}, {3, 0x36, 310},
                             {1, 0x14e, 1}, {0, 0, 0},     {3, 0x2f, 0},   {3, 0x39, -1},
                             {3, 0x2f, 1},  {3, 0x39, -1}, {1, 0x14e, 0},  {0, 0, 0}};
    std::string text;
    for (int i = 0; i < 16; ++i)
        text += fmt::format("E: {} {:04x} {:04x} {}\n", i < 10 ? "1.0" : "1.1", events[i][0], events[i][1],
                            events[i][2]);
    return text;
}

const std::string evemuHeader =
    "# EVEMU 1.3\nN: Test Pad\nI: 0011 0002 0007 01b1\nP: 05 00 00 00 00 00 00 00\n"
    "A: 2f 0 1 0 0 0\nA: 35 0 1000 0 0 10\nA: 36 0 600 0 0 10\nA: 39 0 65535 0 0 0\n";

TEST(EvdevReplay, SyntheticRecordings) {
    const testing::ScratchHome home;
    const auto write = [&](const char* name, const std::string& text) {
        testing::writeText(home.temporaryFolder() / name, text);
        return (home.temporaryFolder() / name).string();
    };
    const std::string desc = write("pad.desc", evemuHeader);
    const std::string bindings = write("bindings.json", R"([{"id": "0E4A5C3B-7D2F-4B8E-9A61-3C5D7E9F1A21",
        "gesture": "3.tap", "createdAt": 1, "action": {"appID": "browsers", "optionID": "newtab"}}])");
    const std::string tap = R"({"t": 1.1, "gesture": "3.tap"})";
    // Name, the text in FILE and on standard input, the arguments after "replay", what it prints,
    // and the error after "error: ".
    const std::vector<std::tuple<const char*, std::string, Lines, Lines, std::string>> cases = {
        {"evemu on standard input: a stand-in makes the third finger",
         evemuHeader + threeFingers(),
         {"-"},
         {tap},
         ""},
        {"header-less evemu with --device, through the engine",
         threeFingers(),
         {"FILE", "--device", desc, "--bindings", bindings},
         {tap, R"({"t": 1.1, "run": "browsers/newtab"})",
          R"({"t": 1.1, "event": {"down": true, "flags": 1048576, "key": 17}})",
          R"({"t": 1.1, "event": {"down": false, "flags": 1048576, "key": 17}})"},
         ""},
        {"header-less evemu alone",
         "# from a bug\n" + threeFingers(),
         {"FILE"},
         {},
         "FILE:2: the recording does not describe its device: give its evemu description with --device DESC"},
        {"a bad line after frames were played",
         evemuHeader + threeFingers() + "E: 2.0 0003\n",
         {"FILE"},
         {tap},
         "FILE:25: an event line needs a time, a type, a code and a value"},
        {"time going back",
         evemuHeader + threeFingers() + "E: 0.5 0001 0110 1\nE: 0.5 0000 0000 0\n",
         {"FILE"},
         {tap},
         "FILE:26: time 0.5 is before the previous report's 1.1"},
    };
    for (const auto& [name, text, after, out, err] : cases) {
        const std::string file = write("recording", text);
        Lines arguments{"replay"};
        for (const std::string& argument : after) arguments.push_back(argument == "FILE" ? file : argument);
        const testing::CLIResult result = testing::runCLI(arguments, text, home);
        EXPECT_EQ(result.outLines(), out) << name;
        EXPECT_EQ(result.err, err.empty() ? "" : "error: " + file + err.substr(4) + "\n") << name;
        EXPECT_EQ(result.status, err.empty() ? 0 : 2) << name;
    }
}

}  // namespace
}  // namespace ostrelle
