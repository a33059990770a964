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
#include <sstream>

#include "recognition/recording.h"
#include "testing/scratch_home.h"
#include "touchpad/evdev_event.h"
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
    pad.write(evdev::EV_KEY, evdev::BTN_LEFT, 1);
    pad.report();
    pad.lift(0);
    pad.fingers(0);
    pad.write(evdev::EV_KEY, evdev::BTN_LEFT, 0);
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

}  // namespace
}  // namespace ostrelle
