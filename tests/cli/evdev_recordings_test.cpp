// Every real touchpad recording of the evemu-devices collection, replayed: each is read whole
// or refused for want of multitouch axes, fires what its name promises where the gestures allow
// it (one- and two-finger taps and presses are the system's, not ours), and scrolls and pointer
// motion fire nothing.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <vector>

#include "cli/cli_runner.h"

namespace ostrelle {
namespace {

using Lines = std::vector<std::string>;

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

TEST(EvdevRecordings, TheTableHoldsEveryRecording) {
    std::set<std::string> inFolder;
    for (const auto& entry : std::filesystem::directory_iterator(recordings)) {
        if (entry.path().extension() == ".events") inFolder.insert(entry.path().filename().string());
    }
    std::set<std::string> inTable;
    for (const Row& row : rows) inTable.insert(row.file);
    EXPECT_EQ(inTable, inFolder);
}

TEST(EvdevRecordings, EachReadsWholeAndFiresWhatItsNamePromises) {
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
            EXPECT_EQ(result.status, 2) << row.file;
            EXPECT_THAT(result.err, ::testing::StartsWith("error: " + file + ": "));
            EXPECT_THAT(result.err, ::testing::HasSubstr("has no multitouch position axes")) << row.file;
        } else {
            EXPECT_EQ(result.status, 0) << row.file;
            EXPECT_EQ(result.err, "") << row.file;
        }
        // A semi-multitouch pad is noted once in the log; nothing else is logged.
        const Lines log = home.touched().empty() ? Lines{} : testing::readLines(home.logFile());
        EXPECT_THAT(log, ::testing::SizeIs(row.pad == Pad::semiMultitouch ? 1 : 0)) << row.file;
        EXPECT_THAT(log, ::testing::Each(::testing::HasSubstr("(semi-multitouch)"))) << row.file;
    }
}

}  // namespace
}  // namespace ostrelle
