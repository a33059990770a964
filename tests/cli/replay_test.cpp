// Replays as the command line prints them: through the recognizer alone, and through the whole
// engine with bindings and the dry-run system, with what it logs on the way, which reaches the log
// file however the program ends. What fires when is the core's business.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstring>
#include <nlohmann/json.hpp>
#include <regex>
#include <string>
#include <vector>

#include "cli/cli_runner.h"
#include "recognition/recording.h"

namespace ostrelle {
namespace {

using testing::CLIResult;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using testing::readLines;
using testing::runCLI;
using Lines = std::vector<std::string>;

std::string recordingText(const std::vector<RecordingEvent>& events) {
    std::string text;
    for (const RecordingEvent& event : events) text += recordingLine(event) + "\n";
    return text;
}

// `count` fingers in a row, 0.1 apart, the first at (x, y).
std::vector<Contact> fingers(int count, double x = 0.4, double y = 0.5) {
    std::vector<Contact> contacts;
    for (int i = 0; i < count; ++i) contacts.push_back({i + 1, x + 0.1 * i, y});
    return contacts;
}

// Nine lines: a three-finger tap, four fingers held too long for a tap, a four-finger click.
const std::string tapsAndClick =
    "# taps and a click\n\n" +
    recordingText({RecordedFrame{0, fingers(3)}, RecordedFrame{0.1, {}}, RecordedFrame{1.0, fingers(4)},
                   RecordedFrame{1.6, {}}, RecordedFrame{2.0, fingers(4)}, RecordedClick{2.05, false},
                   RecordedFrame{2.1, {}}});
const Lines tapAndClick{R"({"t": 0.1, "gesture": "3.tap"})", R"({"t": 2.05, "gesture": "4.click"})"};

const std::string fourFingerTap = recordingText({RecordedFrame{1.0, fingers(4)}, RecordedFrame{1.1, {}}});
const std::string clickThenTap =
    recordingText({RecordedFrame{1.0, fingers(3)}, RecordedClick{1.05, false}, RecordedFrame{1.1, {}},
                   RecordedFrame{2.0, fingers(4)}, RecordedFrame{2.1, {}}});
const std::string refusedKeys = "action failed: Accessibility not granted, so keystrokes can't be sent";

struct Replay : ::testing::Test {
    std::string write(const std::string& name, const std::string& contents) const {
        testing::writeText(folder / name, contents);
        return (folder / name).string();
    }
    // A replay through the engine, with these bindings.
    Lines engine(const std::string& file, Lines options = {}) const {
        options.insert(options.begin(), {"replay", file, "--bindings", bindings});
        return options;
    }

    testing::TemporaryFolder folder;
    std::string dir = folder.path().string();
    std::string bindings = write("bindings.json", R"([
        {"id": "0E4A5C3B-7D2F-4B8E-9A61-3C5D7E9F1A21", "gesture": "4.tap", "createdAt": 1,
         "action": {"appID": "browsers", "optionID": "newtab"}},
        {"id": "0E4A5C3B-7D2F-4B8E-9A61-3C5D7E9F1A22", "gesture": "3.click", "createdAt": 1,
         "action": {"appID": "system", "optionID": "expose"}}])");
};

TEST_F(Replay, PrintsGesturesAndOnRequestTracesInFileOrder) {
    const std::string file = write("taps.jsonl", tapsAndClick);
    const CLIResult plain = runCLI({"replay", file});
    EXPECT_EQ(plain.status, 0);
    EXPECT_EQ(plain.err, "");
    EXPECT_EQ(plain.outLines(), tapAndClick);
    EXPECT_EQ(runCLI({"replay", "-"}, tapsAndClick).outLines(), tapAndClick);
    // A frame's trace comes before what the frame fired.
    Lines traced = runCLI({"replay", "--trace", file}).outLines();
    EXPECT_TRUE(traced.at(0).starts_with(R"({"t": 0.1, "trace": ")")) << traced[0];
    std::erase_if(traced,
                  [](const std::string& line) { return line.find(R"("trace")") != std::string::npos; });
    EXPECT_EQ(traced, tapAndClick);
}

TEST_F(Replay, StopsAtTheFirstBadLineNamingItAndKeepingWhatWasPrinted) {
    const std::string bad = "{\"t\": 3, \"touches\": }\n";
    const std::string file = write("bad.jsonl", tapsAndClick + bad + tapsAndClick);
    const CLIResult result = runCLI({"replay", file});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.outLines(), tapAndClick);
    EXPECT_TRUE(std::regex_match(result.err, std::regex("error: " + file + R"(:10: [^\n]+\n)")))
        << result.err;
    const CLIResult piped = runCLI({"replay", "-"}, bad);
    EXPECT_EQ(piped.status, 2);
    EXPECT_TRUE(std::regex_match(piped.err, std::regex(R"(error: <stdin>:1: [^\n]+\n)"))) << piped.err;
}

TEST_F(Replay, RecordsNewShapesAndMatchesLoadedOnes) {
    // Three fingers drawing an "L": down 0.3, then right 0.3, in steps of 0.03 every 20 ms.
    std::vector<RecordingEvent> events;
    for (int k = 0; k <= 20; ++k)
        events.push_back(RecordedFrame{
            0.02 * k, fingers(3, 0.3 + 0.03 * std::max(0, k - 10), 0.2 + 0.03 * std::min(k, 10))});
    events.push_back(RecordedFrame{0.02 * 21, {}});
    const std::string ell = write("ell.jsonl", recordingText(events));
    const Lines recorded = runCLI({"replay", ell, "--recording-shapes"}).outLines();
    ASSERT_EQ(recorded.size(), 1u);

    // Named and handed back through --custom, the same drawing fires that gesture.
    const auto fired = nlohmann::json::parse(recorded[0]);
    nlohmann::json named{{"id", fired["gesture"]}, {"custom", fired["custom"]}};
    named["custom"]["name"] = "Ell";
    const Lines matched =
        runCLI({"replay", ell, "--custom", write("shapes.json", "[" + named.dump() + "]")}).outLines();
    ASSERT_EQ(matched.size(), 1u);
    EXPECT_EQ(nlohmann::json::parse(matched[0]),
              (nlohmann::json{{"t", 0.42}, {"gesture", named["id"]}, {"custom", named["custom"]}}));
}

TEST_F(Replay, RefusesFilesItCannotReadWithStatusTwo) {
    const std::string recording = write("tap.jsonl", tapsAndClick);
    const std::vector<std::pair<Lines, std::string>> unreadable{
        {{"replay", dir + "/none.jsonl"}, "cannot open " + dir + "/none.jsonl: No such file or directory"},
        {{"replay", dir}, dir + ": is a directory"},
        {{"replay", recording, "--custom", dir + "/none.json"},
         "cannot open " + dir + "/none.json: No such file or directory"},
    };
    for (const auto& [arguments, error] : unreadable) {
        const CLIResult result = runCLI(arguments);
        EXPECT_EQ(result.status, 2) << error;
        EXPECT_EQ(result.err, "error: " + error + "\n");
    }
    const std::vector<std::pair<std::string, std::string>> badShapes{
        {"[\n  {\"id\": }\n]", "not valid JSON (line 2)"},
        {"[1e999]", "not valid JSON (a number is out of range)"},
        {R"({"id": "3.custom.A"})", "expected a JSON array of custom gestures"},
        {R"(["3.tap"])", R"([0]: expected a gesture with a "custom" shape)"},
    };
    for (const auto& [contents, problem] : badShapes) {
        const std::string shapes = write("shapes.json", contents);
        const CLIResult result = runCLI({"replay", recording, "--custom", shapes});
        EXPECT_EQ(result.status, 2) << problem;
        EXPECT_EQ(result.err, "error: " + shapes + ": " + problem + "\n");
    }
}

TEST_F(Replay, ThroughTheEnginePrintsGesturesRunsAndEventsAndLeavesTheBindingsAlone) {
    const std::string original = testing::readText(bindings);
    const std::string tap = write("tap.jsonl", fourFingerTap);
    EXPECT_EQ(runCLI(engine(tap)).outLines(),
              (Lines{R"({"t": 1.1, "gesture": "4.tap"})", R"({"t": 1.1, "run": "browsers/newtab"})",
                     R"({"t": 1.1, "event": {"down": true, "flags": 1048576, "key": 17}})",
                     R"({"t": 1.1, "event": {"down": false, "flags": 1048576, "key": 17}})"}));
    EXPECT_EQ(runCLI(engine(write("both.jsonl", clickThenTap), {"--capture"})).outLines(),
              (Lines{R"({"t": 1.05, "gesture": "3.click"})", R"({"t": 1.05, "detection": "3.click"})",
                     R"({"t": 2.1, "gesture": "4.tap"})", R"({"t": 2.45, "detection": "4.tap"})"}));
    EXPECT_EQ(runCLI(engine(tap, {"--settings", "listening=false"})).out, "");
    EXPECT_EQ(testing::readText(bindings), original);  // the replay works on a copy
    const CLIResult missing = runCLI({"replay", "-", "--bindings", dir + "/none.json"});
    EXPECT_EQ(missing.status, 2);
    EXPECT_EQ(missing.err, "error: " + dir + "/none.json: no such bindings file\n");
}

// Run without a home of its own, the replay logs into the test binary's guarded one: the guard
// must see that. This test reads the log there, then clears it as the guard would.
TEST_F(Replay, ThroughTheEngineWithoutTrustRefusesAndLogsKeysButTheDockStillWorks) {
    EXPECT_EQ(runCLI(engine(write("both.jsonl", clickThenTap), {"--untrusted"})).outLines(),
              (Lines{R"({"t": 1.05, "gesture": "3.click"})", R"({"t": 1.05, "run": "system/expose"})",
                     R"({"t": 1.05, "event": {"dock": "com.apple.expose.front.awake"}})",
                     R"({"t": 2.1, "gesture": "4.tap"})", R"({"t": 2.1, "run": "browsers/newtab"})",
                     R"({"t": 2.1, "log": "ERROR", "message": ")" + refusedKeys + R"("})",
                     R"({"t": 2.1, "event": {"beep": true}})"}));
    const testing::ScratchHome& guarded = testing::guardedHome();
    EXPECT_EQ(guarded.touched(), std::vector{guarded.logFile()});
    EXPECT_THAT(readLines(guarded.logFile()), ElementsAre(EndsWith(" ERROR " + refusedKeys)));
    guarded.clear();
}

TEST_F(Replay, EveryRunLeavesItsLogLineInTheFile) {
    const std::string tap = write("tap.jsonl", fourFingerTap);
    const testing::ScratchHome home;
    constexpr std::size_t runs = 10;
    for (std::size_t run = 0; run < runs; ++run)
        ASSERT_EQ(runCLI(engine(tap, {"--untrusted"}), "", home).status, 0);
    EXPECT_THAT(readLines(home.logFile()),
                AllOf(::testing::SizeIs(runs), ::testing::Each(EndsWith(" ERROR " + refusedKeys))));
}

TEST_F(Replay, ATerminationSignalEndsTheProgramOnceItsLogLinesAreWritten) {
    for (const int number : {SIGTERM, SIGINT}) {
        const testing::ScratchHome home;
        // Its input stays open, so it waits for more until the signal comes.
        const CLIResult result =
            runCLI(engine("-", {"--untrusted"}), fourFingerTap, home, {number, R"("log": "ERROR")"});
        EXPECT_EQ(result.signal, number) << strsignal(number);
        EXPECT_THAT(readLines(home.logFile()), ElementsAre(EndsWith(" ERROR " + refusedKeys)))
            << strsignal(number);
    }
}

}  // namespace
}  // namespace ostrelle
