// The background service as a user meets it: one instance per user that a newcomer replaces,
// reached by toggle and status, following the settings file, replaying a recording in real time,
// and asleep while nothing happens.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>

#include <csignal>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <regex>
#include <string>
#include <vector>

#include "cli/cli_runner.h"

namespace ostrelle {
namespace {

namespace fs = std::filesystem;
using testing::BackgroundCLI;
using testing::CLIResult;
using testing::runCLI;
using testing::ScratchHome;
using Lines = std::vector<std::string>;

const std::string notRunning = "error: Ostrelle is not running; start it with \"ostrelle-cli run\"\n";
const std::string example = OSTRELLE_SOURCE_DIR "/examples/four-finger-tap.jsonl";

nlohmann::json status(const ScratchHome& home) {
    const CLIResult result = runCLI({"status"}, "", home);
    EXPECT_EQ(result.status, 0) << result.err;
    return nlohmann::json::parse(result.out, nullptr, false);
}

// Exit status, then what it printed: "STATUS OUT+ERR".
std::string shown(const CLIResult& result) {
    return std::to_string(result.status) + " " + result.out + result.err;
}

// The service hears of a file change a moment after the writer is done; ask until it shows.
bool statusSettles(const ScratchHome& home, const char* key, const nlohmann::json& wanted) {
    const auto deadline = std::chrono::steady_clock::now() + testing::cliTimeLimit;
    while (std::chrono::steady_clock::now() < deadline)
        if (status(home)[key] == wanted) return true;
    return false;
}

fs::path socketFile(const ScratchHome& home) {
    return fs::path(*home.lookup()("XDG_RUNTIME_DIR")) / "ostrelle" / "ostrelle.sock";
}

// The times vary with the real clock; what happened must not.
std::string withoutTimes(const std::string& out) {
    return std::regex_replace(out, std::regex(R"("t": [^,]+, )"), "");
}

// Context switches of every thread of a process: each wake-up is one.
long contextSwitches(int pid) {
    long total = 0;
    for (const auto& task : fs::directory_iterator("/proc/" + std::to_string(pid) + "/task")) {
        for (const std::string& line : testing::readLines(task.path() / "status")) {
            if (line.starts_with("voluntary_ctxt_switches:") ||
                line.starts_with("nonvoluntary_ctxt_switches:"))
                total += std::stol(line.substr(line.find(':') + 1));
        }
    }
    return total;
}

// The service on a recording with one frame now and the next far off: nothing to do in
// between, and no dependence on the touchpads of the machine running the tests.
std::vector<std::string> runWithoutTouchpad(const ScratchHome& home) {
    const fs::path idle = home.temporaryFolder() / "idle.jsonl";
    testing::writeText(idle, "{\"t\": 0, \"touches\": []}\n{\"t\": 600, \"touches\": []}\n");
    return {"run", "--replay", idle.string()};
}

TEST(Service, ANewcomerTakesOverFromTheRunningOneAndFromAStaleSocketThenSleepsWhileNothingHappens) {
    const ScratchHome home;
    {
        BackgroundCLI killed(runWithoutTouchpad(home), home);
        ASSERT_TRUE(killed.waitUntilReady());
    }  // and killed, which leaves a socket file without an owner
    ASSERT_TRUE(fs::exists(socketFile(home)));
    BackgroundCLI first(runWithoutTouchpad(home), home);
    ASSERT_TRUE(first.waitUntilReady());
    EXPECT_EQ(status(home)["pid"], first.pid());

    BackgroundCLI second(runWithoutTouchpad(home), home);
    ASSERT_TRUE(second.waitUntilReady());
    EXPECT_EQ(shown(first.finish()), "0 ");  // it was asked to quit, and did
    const nlohmann::json settled = status(home);
    EXPECT_EQ(settled["pid"], second.pid());
    ASSERT_EQ(settled["events"]["all"], 1);  // settled: the first frame is in
    // Without /dev/uinput and a display (as here) the status says what keeps keys from going out.
    const std::string keysError = settled["keysError"].dump();
    EXPECT_TRUE(fs::exists("/dev/uinput") || keysError.find("scripts/install.sh") != std::string::npos)
        << keysError;
    EXPECT_EQ(settled["haptics"], false);
    const long before = contextSwitches(second.pid());
    // The one test that waits on the clock: it measures idling, for a bounded second and a half.
    ::poll(nullptr, 0, 1500);
    EXPECT_EQ(contextSwitches(second.pid()), before);

    EXPECT_EQ(shown(second.finish(SIGTERM)), "0 ");
    EXPECT_FALSE(fs::exists(socketFile(home)));
    EXPECT_EQ(runCLI({"status"}, "", home).err, notRunning);
}

TEST(Service, ToggleStatusAndFilesChangedByAnotherProcessReachTheRunningInstance) {
    const ScratchHome home;
    EXPECT_EQ(shown(runCLI({"status"}, "", home)), "1 " + notRunning);
    EXPECT_EQ(shown(runCLI({"toggle"}, "", home)), "1 " + notRunning);
    BackgroundCLI service(runWithoutTouchpad(home), home);
    ASSERT_TRUE(service.waitUntilReady());
    const nlohmann::json before = status(home);
    EXPECT_EQ(before["listening"], true);
    EXPECT_EQ(before["sourceError"], nullptr);
    EXPECT_EQ(before["bindings"], 4);  // the seed for a first start

    EXPECT_EQ(shown(runCLI({"toggle"}, "", home)), "0 {\"listening\": false}\n");
    EXPECT_EQ(status(home)["listening"], false);
    // The switch is a setting like any other: it outlives the service, and the service follows it.
    EXPECT_EQ(shown(runCLI({"settings", "listening"}, "", home)), "0 false\n");
    ASSERT_EQ(runCLI({"settings", "--delete", "listening"}, "", home).status, 0);
    EXPECT_TRUE(statusSettles(home, "listening", true));  // absent means on
    ASSERT_EQ(runCLI({"bind", "3.swipe.up", "browsers/reload"}, "", home).status, 0);
    EXPECT_TRUE(statusSettles(home, "bindings", 5));
    EXPECT_EQ(service.finish(SIGINT).status, 0);
}

TEST(Service, SettingsCommandValidatesAndShowsWhatItStored) {
    const ScratchHome home;
    const std::string shortcut = R"({"key": 17, "modifiers": ["control", "option"]})";
    const std::vector<std::tuple<const char*, Lines, std::string>> steps = {
        {"nothingYet", {}, "0 {}\n"},
        {"unsetKey", {"listening"}, "1 error: listening is not set\n"},
        {"setBoolean", {"hapticFeedback", "true"}, "0 "},
        {"notABoolean", {"listening", "yes"}, "2 error: listening takes true or false, not \"yes\"\n"},
        {"setShortcut", {"toggleShortcut", shortcut}, "0 "},
        {"shortcutNotGlobal",
         {"toggleShortcut", R"({"key": 17, "modifiers": ["shift"]})"},
         "2 error: Use ⌃, ⌥ or ⌘ with a key, or an F-key alone.\n"},
        {"showOne", {"toggleShortcut"}, "0 " + shortcut + "\n"},
        {"delete", {"--delete", "hapticFeedback"}, "0 "},
        {"showAll", {}, "0 {\"toggleShortcut\": " + shortcut + "}\n"},
    };
    for (const auto& [name, arguments, expected] : steps) {
        Lines command{"settings"};
        command.insert(command.end(), arguments.begin(), arguments.end());
        EXPECT_EQ(shown(runCLI(command, "", home)), expected) << name;
    }
    EXPECT_THAT(shown(runCLI({"settings", "volume", "3"}, "", home)),
                ::testing::StartsWith("2 error: unknown setting \"volume\" (known: listening, "));
}

TEST(Service, DryRunOfARecordingPrintsTheReplaysGesturesWithLinuxKeysAndEnds) {
    const ScratchHome home;
    const std::string bindings = (home.temporaryFolder() / "mine.json").string();
    testing::writeText(bindings, R"([{"id": "0E4A5C3B-7D2F-4B8E-9A61-3C5D7E9F1A21", "gesture": "4.tap",
        "createdAt": 1, "action": {"appID": "browsers", "optionID": "newtab"}}])");
    const CLIResult replay = runCLI({"replay", example, "--bindings", bindings}, "", home);
    ASSERT_EQ(replay.status, 0) << replay.err;
    ASSERT_GE(replay.outLines().size(), 3u);
    const CLIResult played =
        BackgroundCLI({"run", "--replay", example, "--dry-run", "--bindings", bindings}, home).finish();
    EXPECT_EQ(played.status, 0) << played.err;
    // The same gestures; the new tab is Ctrl+T on Linux, not ⌘T.
    const auto split = [](const CLIResult& result) {
        std::pair<std::string, std::string> parts;
        for (const std::string& line : result.outLines()) {
            (line.find(R"("event")") == std::string::npos ? parts.first : parts.second) +=
                withoutTimes(line) + "\n";
        }
        return parts;
    };
    EXPECT_EQ(split(played).first, split(replay).first);
    EXPECT_EQ(split(played).second, R"({"event": {"down": true, "linuxKey": 29}}
{"event": {"down": true, "linuxKey": 20}}
{"event": {"down": false, "linuxKey": 20}}
{"event": {"down": false, "linuxKey": 29}}
)");
    EXPECT_THAT(
        shown(BackgroundCLI({"run", "--replay", bindings, "--dry-run"}, home).finish()),
        ::testing::AllOf(::testing::StartsWith("2 "), ::testing::HasSubstr("error: " + bindings + ":1: ")));
}

}  // namespace
}  // namespace ostrelle
