// Replays through the whole engine: bindings, the double-tap wait, capture, the dry-run system.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "cli/cli_runner.h"
#include "recognition/recording.h"
#include "testing/temporary_folder.h"

namespace ostrelle {
namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;
using testing::readText;
using testing::runCLI;
using testing::TemporaryFolder;
using testing::writeFile;
using Lines = std::vector<std::string>;

std::string recording(const std::vector<RecordingEvent>& events) {
    std::string text;
    for (const RecordingEvent& event : events) text += recordingLine(event) + "\n";
    return text;
}

const std::vector<Contact> fourFingers{{1, 0.3, 0.5}, {2, 0.4, 0.5}, {3, 0.5, 0.5}, {4, 0.6, 0.5}};
const std::vector<Contact> threeFingers{{1, 0.4, 0.5}, {2, 0.5, 0.5}, {3, 0.6, 0.5}};

std::string binding(int n, const std::string& gesture, const std::string& app, const std::string& option) {
    return R"({"id": "0E4A5C3B-7D2F-4B8E-9A61-3C5D7E9F1A2)" + std::to_string(n) + R"(", "gesture": ")" +
           gesture + R"(", "action": {"appID": ")" + app + R"(", "optionID": ")" + option +
           R"("}, "createdAt": 1})";
}

struct EngineReplay : ::testing::Test {
    TemporaryFolder folder;
    std::filesystem::path bindings = writeFile(folder.path(), "bindings.json",
                                               "[" + binding(1, "4.tap", "browsers", "newtab") + "," +
                                                   binding(2, "4.doubleTap", "browsers", "close") + "," +
                                                   binding(3, "3.click", "system", "expose") + "]");
    std::string original = readText(bindings);
};

TEST_F(EngineReplay, ATapWaitsForItsDoubleTapThenRunsWithItsEvents) {
    const auto file = writeFile(folder.path(), "tap.jsonl",
                                recording({RecordedFrame{1.0, fourFingers}, RecordedFrame{1.1, {}}}));
    const auto result = runCLI({"replay", file.string(), "--bindings", bindings.string()});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.outLines(),
              (Lines{
                  R"({"t": 1.1, "gesture": "4.tap"})",
                  R"({"t": 1.4500000000000002, "run": "browsers/newtab"})",
                  R"({"t": 1.4500000000000002, "event": {"down": true, "flags": 1048576, "key": 17}})",
                  R"({"t": 1.4500000000000002, "event": {"down": false, "flags": 1048576, "key": 17}})",
              }));
    EXPECT_EQ(readText(bindings), original);  // the user's file is never written
}

TEST_F(EngineReplay, ADoubleTapRunsInTheFrameThatCompletesIt) {
    const auto file = writeFile(folder.path(), "double.jsonl",
                                recording({RecordedFrame{1.0, fourFingers}, RecordedFrame{1.1, {}},
                                           RecordedFrame{1.2, fourFingers}, RecordedFrame{1.3, {}}}));
    const auto lines = runCLI({"replay", file.string(), "--bindings", bindings.string()}).outLines();
    EXPECT_EQ(lines, (Lines{
                         R"({"t": 1.1, "gesture": "4.tap"})",
                         R"({"t": 1.3, "gesture": "4.doubleTap"})",
                         R"({"t": 1.3, "run": "browsers/close"})",
                         R"({"t": 1.3, "event": {"down": true, "flags": 1048576, "key": 13}})",
                         R"({"t": 1.3, "event": {"down": false, "flags": 1048576, "key": 13}})",
                     }));
}

TEST_F(EngineReplay, WithoutTrustKeysAreRefusedButTheDockStillWorks) {
    const auto file = writeFile(
        folder.path(), "both.jsonl",
        recording({RecordedFrame{1.0, threeFingers}, RecordedClick{1.05, false}, RecordedFrame{1.1, {}},
                   RecordedFrame{2.0, fourFingers}, RecordedFrame{2.1, {}}}));
    const testing::ScratchHome home;  // the refused keys are logged
    const auto lines =
        runCLI({"replay", file.string(), "--bindings", bindings.string(), "--untrusted"}, "", home)
            .outLines();
    EXPECT_EQ(
        lines,
        (Lines{
            R"({"t": 1.05, "gesture": "3.click"})",
            R"({"t": 1.05, "run": "system/expose"})",
            R"({"t": 1.05, "event": {"dock": "com.apple.expose.front.awake"}})",
            R"({"t": 2.1, "gesture": "4.tap"})",
            R"({"t": 2.45, "run": "browsers/newtab"})",
            R"({"t": 2.45, "log": "ERROR", "message": "action failed: Accessibility not granted, so keystrokes can't be sent"})",
            R"({"t": 2.45, "event": {"beep": true}})",
        }));
    EXPECT_THAT(testing::readLines(home.logFile()),
                ElementsAre(EndsWith(
                    " ERROR action failed: Accessibility not granted, so keystrokes can't be sent")));
}

TEST_F(EngineReplay, ARunThatLogsWithoutAHomeOfItsOwnIsCaught) {
    const auto file = writeFile(folder.path(), "tap.jsonl",
                                recording({RecordedFrame{1.0, fourFingers}, RecordedFrame{1.1, {}}}));
    EXPECT_EQ(runCLI({"replay", file.string(), "--bindings", bindings.string(), "--untrusted"}).status, 0);
    const testing::ScratchHome& guarded = testing::guardedHome();
    EXPECT_EQ(guarded.touched(), std::vector{guarded.logFile()});
    guarded.clear();  // as the guard does after failing a test
}

TEST_F(EngineReplay, CaptureReportsDetectionsAndRunsNothing) {
    const auto file = writeFile(folder.path(), "capture.jsonl",
                                recording({RecordedFrame{1.0, threeFingers}, RecordedFrame{1.1, {}},
                                           RecordedFrame{2.0, fourFingers}, RecordedFrame{2.1, {}}}));
    const auto lines =
        runCLI({"replay", file.string(), "--bindings", bindings.string(), "--capture"}).outLines();
    EXPECT_EQ(lines, (Lines{
                         R"({"t": 1.1, "gesture": "3.tap"})",
                         R"({"t": 1.1, "detection": "3.tap"})",
                         R"({"t": 2.1, "gesture": "4.tap"})",
                         R"({"t": 2.45, "detection": "4.tap"})",
                     }));
}

TEST_F(EngineReplay, SettingsReachTheEngine) {
    const auto file = writeFile(folder.path(), "tap.jsonl",
                                recording({RecordedFrame{1.0, threeFingers}, RecordedFrame{1.1, {}}}));
    writeFile(folder.path(), "three.json", "[" + binding(1, "3.tap", "browsers", "newtab") + "]");
    const auto lines = runCLI({"replay", file.string(), "--bindings", (folder.path() / "three.json").string(),
                               "--settings", "hapticFeedback=true"})
                           .outLines();
    ASSERT_GE(lines.size(), 3U);
    EXPECT_EQ(lines[1], R"({"t": 1.1, "run": "browsers/newtab"})");
    EXPECT_EQ(lines[2], R"({"t": 1.1, "event": {"haptic": true}})");
    const auto off = runCLI({"replay", file.string(), "--bindings", (folder.path() / "three.json").string(),
                             "--settings", "listening=false"});
    EXPECT_EQ(off.status, 0);
    EXPECT_TRUE(off.out.empty());
}

TEST_F(EngineReplay, RefusesWhatItCannotDo) {
    const auto file = writeFile(folder.path(), "tap.jsonl", recording({RecordedFrame{1.0, threeFingers}}));
    const auto missing =
        runCLI({"replay", file.string(), "--bindings", (folder.path() / "none.json").string()});
    EXPECT_EQ(missing.status, 2);
    EXPECT_NE(missing.err.find("no such bindings file"), std::string::npos) << missing.err;
    EXPECT_EQ(runCLI({"replay", file.string(), "--capture"}).status, 2);
    EXPECT_EQ(runCLI({"replay", file.string(), "--bindings", bindings.string(), "--settings"}).status, 2);
    EXPECT_EQ(runCLI({"replay", file.string(), "--bindings", bindings.string(), "--custom", "x.json"}).status,
              2);
}

}  // namespace
}  // namespace ostrelle
