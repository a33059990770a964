// The background service as a user meets it: one instance per user that a newcomer replaces,
// reached by toggle and status, following the settings file, replaying a recording in real time,
// and asleep while nothing happens.
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <csignal>
#include <cstring>
#include <filesystem>
#include <nlohmann/json.hpp>
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

// A socket file whose owner is gone, as a killed instance leaves it.
void leaveStaleSocket(const fs::path& file) {
    fs::create_directories(file.parent_path());
    const int fd = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, file.c_str(), sizeof address.sun_path - 1);
    ASSERT_EQ(::bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ::close(fd);
}

// The times vary with the real clock; what happened must not.
Lines withoutTimes(const Lines& lines) {
    Lines result;
    for (const std::string& line : lines) {
        auto value = nlohmann::json::parse(line);
        value.erase("t");
        result.push_back(value.dump());
    }
    return result;
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

TEST(Service, ANewcomerTakesOverFromTheRunningOneAndFromAStaleSocket) {
    const ScratchHome home;
    leaveStaleSocket(socketFile(home));
    BackgroundCLI first(runWithoutTouchpad(home), home);
    ASSERT_TRUE(first.waitUntilReady());
    EXPECT_EQ(status(home)["pid"], first.pid());

    BackgroundCLI second(runWithoutTouchpad(home), home);
    ASSERT_TRUE(second.waitUntilReady());
    const CLIResult replaced = first.finish();  // it was asked to quit, and did
    EXPECT_EQ(replaced.status, 0) << replaced.err;
    EXPECT_EQ(status(home)["pid"], second.pid());

    const CLIResult stopped = second.finish(SIGTERM);
    EXPECT_EQ(stopped.status, 0) << stopped.err;
    EXPECT_FALSE(fs::exists(socketFile(home)));
    EXPECT_EQ(runCLI({"status"}, "", home).err, notRunning);
}

TEST(Service, ToggleAndStatusReachTheRunningInstanceAndSayWhenNoneRuns) {
    const ScratchHome home;
    for (const char* command : {"status", "toggle"}) {
        const CLIResult none = runCLI({command}, "", home);
        EXPECT_EQ(none.status, 1) << command;
        EXPECT_EQ(none.err, notRunning) << command;
    }
    BackgroundCLI service(runWithoutTouchpad(home), home);
    ASSERT_TRUE(service.waitUntilReady());
    const nlohmann::json before = status(home);
    EXPECT_EQ(before["listening"], true);
    EXPECT_EQ(before["sourceError"], nullptr);
    EXPECT_EQ(before["bindings"], 4);  // the seed for a first start

    EXPECT_EQ(runCLI({"toggle"}, "", home).out, "{\"listening\": false}\n");
    EXPECT_EQ(status(home)["listening"], false);
    // The switch is a setting like any other: it outlives the service.
    EXPECT_EQ(runCLI({"settings", "listening"}, "", home).out, "false\n");
    EXPECT_EQ(service.finish(SIGINT).status, 0);
}

TEST(Service, FollowsSettingsAndBindingsThatAnotherProcessChanges) {
    const ScratchHome home;
    BackgroundCLI service(runWithoutTouchpad(home), home);
    ASSERT_TRUE(service.waitUntilReady());
    ASSERT_EQ(runCLI({"settings", "listening", "false"}, "", home).status, 0);
    EXPECT_TRUE(statusSettles(home, "listening", false));
    ASSERT_EQ(runCLI({"settings", "--delete", "listening"}, "", home).status, 0);
    EXPECT_TRUE(statusSettles(home, "listening", true));  // absent means on
    // So does a binding made beside it.
    ASSERT_EQ(runCLI({"bind", "3.swipe.up", "browsers/reload"}, "", home).status, 0);
    EXPECT_TRUE(statusSettles(home, "bindings", 5));
    EXPECT_EQ(service.finish(SIGTERM).status, 0);
}

struct SettingsStep {
    std::string name;
    std::vector<std::string> arguments;
    int status;
    std::string out;
    std::string err;
};

TEST(Service, SettingsCommandValidatesAndShowsWhatItStored) {
    const ScratchHome home;
    const std::string shortcut = R"({"key": 17, "modifiers": ["control", "option"]})";
    const SettingsStep steps[] = {
        {"nothingYet", {"settings"}, 0, "{}\n", ""},
        {"unsetKey", {"settings", "listening"}, 1, "", "error: listening is not set\n"},
        {"setBoolean", {"settings", "hapticFeedback", "true"}, 0, "", ""},
        {"notABoolean",
         {"settings", "listening", "yes"},
         2,
         "",
         "error: listening takes true or false, not \"yes\"\n"},
        {"setShortcut", {"settings", "toggleShortcut", shortcut}, 0, "", ""},
        {"shortcutNotGlobal",
         {"settings", "toggleShortcut", R"({"key": 17, "modifiers": ["shift"]})"},
         2,
         "",
         "error: Use ⌃, ⌥ or ⌘ with a key, or an F-key alone.\n"},
        {"showOne",
         {"settings", "toggleShortcut"},
         0,
         R"({"key": 17, "modifiers": ["control", "option"]})"
         "\n",
         ""},
        {"delete", {"settings", "--delete", "hapticFeedback"}, 0, "", ""},
        {"showAll",
         {"settings"},
         0,
         R"({"toggleShortcut": {"key": 17, "modifiers": ["control", "option"]}})"
         "\n",
         ""},
    };
    for (const SettingsStep& step : steps) {
        const CLIResult result = runCLI(step.arguments, "", home);
        EXPECT_EQ(result.status, step.status) << step.name;
        EXPECT_EQ(result.out, step.out) << step.name;
        EXPECT_EQ(result.err, step.err) << step.name;
    }
    const CLIResult unknown = runCLI({"settings", "volume", "3"}, "", home);
    EXPECT_EQ(unknown.status, 2);
    EXPECT_TRUE(unknown.err.starts_with("error: unknown setting \"volume\" (known: listening, "))
        << unknown.err;
}

TEST(Service, DryRunOfARecordingPrintsWhatAReplayPrintsAndEnds) {
    const ScratchHome home;
    const fs::path bindings = fs::path(*home.lookup()("XDG_CONFIG_HOME")) / "mine.json";
    testing::writeText(bindings, R"([{"id": "0E4A5C3B-7D2F-4B8E-9A61-3C5D7E9F1A21", "gesture": "4.tap",
        "createdAt": 1, "action": {"appID": "browsers", "optionID": "newtab"}}])");
    const CLIResult replay = runCLI({"replay", example, "--bindings", bindings.string()}, "", home);
    ASSERT_EQ(replay.status, 0) << replay.err;
    ASSERT_GE(replay.outLines().size(), 3u);

    BackgroundCLI service({"run", "--replay", example, "--dry-run", "--bindings", bindings.string()}, home);
    const CLIResult played = service.finish();
    EXPECT_EQ(played.status, 0) << played.err;
    EXPECT_EQ(withoutTimes(played.outLines()), withoutTimes(replay.outLines()));

    BackgroundCLI bad({"run", "--replay", bindings.string(), "--dry-run"}, home);
    const CLIResult refused = bad.finish();
    EXPECT_EQ(refused.status, 2);
    EXPECT_NE(refused.err.find("error: " + bindings.string() + ":1: "), std::string::npos) << refused.err;
}

TEST(Service, SleepsWhileNothingHappens) {
    const ScratchHome home;
    BackgroundCLI service(runWithoutTouchpad(home), home);
    ASSERT_TRUE(service.waitUntilReady());
    ASSERT_EQ(status(home)["events"]["all"], 1);  // settled: the first frame is in
    const long before = contextSwitches(service.pid());
    // The one test that waits on the clock: it measures idling, for a bounded second and a half.
    ::poll(nullptr, 0, 1500);
    EXPECT_EQ(contextSwitches(service.pid()), before);
    EXPECT_EQ(service.finish(SIGTERM).status, 0);
}

}  // namespace
}  // namespace ostrelle
