// ostrelle-cli on a live touchpad: the recording `record` writes until interrupted, and the
// service acting on a gesture.
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "node_reader.h"
#include "platform/linux/uinput_key_output.h"
#include "recognition/recording.h"
#include "testing/scratch_home.h"
#include "uinput_device.h"

namespace ostrelle {
namespace {

// Reads what `fd` gives until `out` holds `text` or, without a text, to the end; false if that
// did not come within a few seconds.
bool readUntil(int fd, std::string& out, const std::string& text = {}) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    while (text.empty() || out.find(text) == std::string::npos) {
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
        pollfd watched{fd, POLLIN, 0};
        char buffer[4096];
        ssize_t length = -1;
        if (left.count() > 0 && ::poll(&watched, 1, static_cast<int>(left.count())) > 0)
            length = ::read(fd, buffer, sizeof buffer);
        if (length <= 0) return length == 0 && text.empty();
        out.append(buffer, static_cast<std::size_t>(length));
    }
    return true;
}

// The variables that point a started program at `home` instead of the test's own folders.
std::string environmentOf(const testing::ScratchHome& home) {
    std::string assignments;
    for (const auto& [name, folder] : home.variables()) assignments += name + "=" + folder.string() + " ";
    return assignments;
}

// ostrelle-cli with these arguments, its output read as it comes. The shell tells the program's
// process id first, then becomes the program.
struct RunningCLI {
    explicit RunningCLI(const std::string& arguments,
                        const testing::ScratchHome& home = testing::guardedHome())
        : pipe(::popen(
              ("echo $$; exec env " + environmentOf(home) + std::getenv("OSTRELLE_CLI") + " " + arguments)
                  .c_str(),
              "r")) {
        std::string head;
        if (pipe && readUntil(::fileno(pipe), head, "\n")) pid = std::stoi(head);
        output = head.substr(head.find('\n') + 1);
    }
    bool waitFor(const std::string& text) { return readUntil(::fileno(pipe), output, text); }
    // Interrupts it and reads the rest; true when it then ended with status 0.
    bool interrupt() {
        ::kill(pid, SIGINT);
        const bool ended = readUntil(::fileno(pipe), output);
        if (!ended) ::kill(pid, SIGKILL);
        const int status = ::pclose(pipe);
        return ended && WIFEXITED(status) && WEXITSTATUS(status) == 0;
    }

    FILE* pipe;
    pid_t pid = 0;
    std::string output;
};

TEST(RecordCommand, WritesTheTouchpadAsARecordingUntilInterrupted) {
    if (std::getenv("OSTRELLE_CLI") == nullptr) GTEST_SKIP() << "OSTRELLE_CLI names no ostrelle-cli";
    testing::UinputDevice pad({.name = "Recorded pad"});
    RunningCLI cli("record --device " + pad.node());
    ASSERT_TRUE(cli.waitFor("# slots: 5\n")) << cli.output;
    std::string& output = cli.output;
    for (const char* header : {"# device: Recorded pad\n", "# x: minimum 0 maximum 1000"})
        EXPECT_NE(output.find(header), std::string::npos) << output;

    pad.touch(0, 3, 500, 300);
    pad.fingers(1);
    pad.report();
    pad.write(EV_KEY, BTN_LEFT, 1);
    pad.report();
    pad.lift(0);
    pad.fingers(0);
    pad.write(EV_KEY, BTN_LEFT, 0);
    pad.report();
    const bool wrote = cli.waitFor("\"touches\": []");
    EXPECT_TRUE(cli.interrupt()) << "an interrupt ends it without a failure";
    ASSERT_TRUE(wrote) << output;

    std::istringstream text(output);
    RecordingReader reader(text);
    std::vector<RecordingEvent> events;
    while (auto event = reader.next()) {
        std::visit([](auto& recorded) { recorded.time = 0; }, *event);
        events.push_back(*event);
    }
    EXPECT_EQ(events, (std::vector<RecordingEvent>{RecordedFrame{0, {{3, 0.5, 0.5}}}, RecordedClick{},
                                                   RecordedFrame{}}))
        << output;
}

TEST(RunCommand, TheServiceReadsATouchpadPluggedInAndRunsTheBindingOfItsGesture) {
    if (std::getenv("OSTRELLE_CLI") == nullptr) GTEST_SKIP() << "OSTRELLE_CLI names no ostrelle-cli";
    const testing::ScratchHome home;  // the service writes its bindings and settings
    RunningCLI service("run --dry-run", home);
    const auto touchpadsRead = [&home] {
        RunningCLI status("status", home);
        status.waitFor("}");
        status.interrupt();
        return status.output.find("\"touchpads\": 1") != std::string::npos;
    };
    // No touchpad yet: the service waits for one and reads it once it comes.
    testing::UinputDevice pad;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    bool read = false;
    while (!(read = touchpadsRead()) && std::chrono::steady_clock::now() < deadline) {
    }
    ASSERT_TRUE(read) << "status never showed the touchpad read";
    // Three fingers tap: the first start's default bindings open a new tab on that.
    for (int slot = 0; slot < 3; ++slot) pad.touch(slot, 20 + slot, 300 + 200 * slot, 300);
    pad.fingers(3);
    pad.report();
    for (int slot = 0; slot < 3; ++slot) pad.lift(slot);
    pad.fingers(0);
    pad.report();
    EXPECT_TRUE(service.waitFor("\"run\": \"browsers/newtab\"")) << service.output;
    EXPECT_TRUE(service.interrupt());
}

// The event node of the input device with this name; empty when there is none.
std::string nodeNamed(std::string_view name) {
    for (const auto& entry : std::filesystem::directory_iterator("/dev/input")) {
        if (!entry.path().filename().string().starts_with("event")) continue;
        testing::NodeReader reader(entry.path().string());
        if (reader.device() && libevdev_get_name(reader.device()) == name) return entry.path().string();
    }
    return {};
}

void tap(testing::UinputDevice& pad, int fingers) {
    for (int slot = 0; slot < fingers; ++slot) pad.touch(slot, 40 + slot, 200 + 150 * slot, 300);
    pad.fingers(fingers);
    pad.report();
    for (int slot = 0; slot < fingers; ++slot) pad.lift(slot);
    pad.fingers(0);
    pad.report();
}

TEST(RunCommand, TheServiceSendsTheKeysAndClicksOfItsActionsThroughItsVirtualKeyboard) {
    if (std::getenv("OSTRELLE_CLI") == nullptr) GTEST_SKIP() << "OSTRELLE_CLI names no ostrelle-cli";
    const testing::ScratchHome home;
    const auto bindings = home.temporaryFolder() / "bindings.json";
    std::filesystem::create_directories(bindings.parent_path());
    std::ofstream(bindings) << R"([
        {"id": "0E4A5C3B-7D2F-4B8E-9A61-3C5D7E9F1A21", "gesture": "3.tap", "createdAt": 1,
         "action": {"appID": "browsers", "optionID": "reopen"}},
        {"id": "0E4A5C3B-7D2F-4B8E-9A61-3C5D7E9F1A22", "gesture": "4.tap", "createdAt": 2,
         "action": {"appID": "browsers", "optionID": "linktab"}}])";
    testing::UinputDevice pad;
    RunningCLI service("run --bindings " + bindings.string(), home);
    std::string output;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while ((output = nodeNamed(UinputKeyOutput::deviceName)).empty() &&
           std::chrono::steady_clock::now() < deadline) {
    }
    ASSERT_FALSE(output.empty()) << "the service made no virtual keyboard";
    testing::NodeReader reader(output);
    const auto touchpadRead = [&home] {
        RunningCLI status("status", home);
        status.waitFor("}");
        status.interrupt();
        return status.output.find("\"touchpads\": 1") != std::string::npos;
    };
    while (!touchpadRead() && std::chrono::steady_clock::now() < deadline) {
    }

    // Ctrl+Shift+T: the modifiers go down in a fixed order before the key and come up after it.
    tap(pad, 3);
    using testing::KeyEvent;
    const std::vector<KeyEvent> reopen{{KEY_LEFTCTRL, 1}, {KEY_LEFTSHIFT, 1}, {KEY_T, 1},
                                       {KEY_T, 0},        {KEY_LEFTSHIFT, 0}, {KEY_LEFTCTRL, 0}};
    EXPECT_EQ(reader.keys(6), reopen);
    // Nothing more for that tap. The wait also lets the next fingers land as a new gesture: ones
    // that come back within the recognizer's dropout window would continue the last one.
    EXPECT_EQ(reader.keys(1, std::chrono::milliseconds(100)), std::vector<KeyEvent>{});
    // A link opened in a new tab: the left button clicked with Ctrl held.
    tap(pad, 4);
    EXPECT_EQ(reader.keys(4),
              (std::vector<KeyEvent>{{KEY_LEFTCTRL, 1}, {BTN_LEFT, 1}, {BTN_LEFT, 0}, {KEY_LEFTCTRL, 0}}));
    EXPECT_TRUE(service.interrupt()) << service.output;
}

}  // namespace
}  // namespace ostrelle
