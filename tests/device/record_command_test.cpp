// `ostrelle-cli record` on a live touchpad: the recording it writes until interrupted.
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

TEST(RecordCommand, WritesTheTouchpadAsARecordingUntilInterrupted) {
    if (std::getenv("OSTRELLE_CLI") == nullptr) GTEST_SKIP() << "OSTRELLE_CLI names no ostrelle-cli";
    testing::UinputDevice pad({.name = "Recorded pad"});
    // The shell tells the program's process id, then becomes the program.
    FILE* cli = ::popen(
        ("echo $$; exec " + std::string(std::getenv("OSTRELLE_CLI")) + " record --device " + pad.node())
            .c_str(),
        "r");
    ASSERT_NE(cli, nullptr);
    std::string output;
    const bool started = readUntil(::fileno(cli), output, "# slots: 5\n");
    const pid_t pid = std::stoi(output);
    output.erase(0, output.find('\n') + 1);
    ASSERT_TRUE(started) << output;
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
    const bool wrote = readUntil(::fileno(cli), output, "\"touches\": []");
    ::kill(pid, SIGINT);
    const bool ended = readUntil(::fileno(cli), output);
    if (!ended) ::kill(pid, SIGKILL);
    const int status = ::pclose(cli);
    ASSERT_TRUE(wrote) << output;
    EXPECT_TRUE(ended && WIFEXITED(status) && WEXITSTATUS(status) == 0)
        << "an interrupt ends it without a failure";

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

}  // namespace
}  // namespace ostrelle
