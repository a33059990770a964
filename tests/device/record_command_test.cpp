// `ostrelle-cli record` on a live touchpad: the recording it writes until interrupted.
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <sstream>

#include "recognition/recording.h"
#include "touchpad/evdev_event.h"
#include "uinput_device.h"

namespace ostrelle {
namespace {

constexpr auto outputLimit = std::chrono::seconds(5);

// ostrelle-cli (as OSTRELLE_CLI names it) with its standard output on a pipe the test reads.
class RunningCLI {
  public:
    explicit RunningCLI(std::vector<std::string> arguments) {
        int ends[2];
        if (::pipe(ends) != 0) return;
        pid_ = ::fork();
        if (pid_ == 0) {
            ::dup2(ends[1], STDOUT_FILENO);
            std::vector<char*> argv{std::getenv("OSTRELLE_CLI")};
            for (std::string& argument : arguments) argv.push_back(argument.data());
            argv.push_back(nullptr);
            ::execv(argv[0], argv.data());
            ::_exit(127);
        }
        ::close(ends[1]);
        output_ = ends[0];
    }
    ~RunningCLI() {
        if (pid_ > 0 && ::kill(pid_, SIGKILL) == 0) ::waitpid(pid_, nullptr, 0);
        ::close(output_);
    }

    // Reads until the output holds `text`; false if it did not come within the limit. Without a
    // text, interrupts the program, reads to the end and tells whether it exited with 0.
    bool read(const std::string& text = {}) {
        if (text.empty()) ::kill(pid_, SIGINT);
        const auto deadline = std::chrono::steady_clock::now() + outputLimit;
        ssize_t length = 1;
        while (text.empty() || read_.find(text) == std::string::npos) {
            const auto left =
                std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
            pollfd watched{output_, POLLIN, 0};
            char buffer[4096];
            length = -1;
            if (left.count() > 0 && ::poll(&watched, 1, static_cast<int>(left.count())) > 0)
                length = ::read(output_, buffer, sizeof buffer);
            if (length <= 0) break;
            read_.append(buffer, static_cast<std::size_t>(length));
        }
        if (!text.empty()) return read_.find(text) != std::string::npos;
        if (length != 0) ::kill(pid_, SIGKILL);  // no end of output: it hangs
        int status = -1;
        ::waitpid(std::exchange(pid_, -1), &status, 0);
        return WIFEXITED(status) && WEXITSTATUS(status) == 0;
    }

    const std::string& output() const { return read_; }

  private:
    pid_t pid_ = -1;
    int output_ = -1;
    std::string read_;
};

TEST(RecordCommand, WritesTheTouchpadAsARecordingUntilInterrupted) {
    if (std::getenv("OSTRELLE_CLI") == nullptr) GTEST_SKIP() << "OSTRELLE_CLI names no ostrelle-cli";
    testing::UinputDevice pad({.name = "Recorded pad"});
    RunningCLI cli({"record", "--device", pad.node()});
    ASSERT_TRUE(cli.read("# slots: 5\n")) << cli.output();
    for (const char* header : {"# device: Recorded pad\n", "# x: minimum 0 maximum 1000"})
        EXPECT_NE(cli.output().find(header), std::string::npos) << cli.output();

    pad.touch(0, 3, 500, 300);
    pad.fingers(1);
    pad.report();
    pad.write(evdev::EV_KEY, evdev::BTN_LEFT, 1);
    pad.report();
    pad.lift(0);
    pad.fingers(0);
    pad.write(evdev::EV_KEY, evdev::BTN_LEFT, 0);
    pad.report();
    ASSERT_TRUE(cli.read("\"touches\": []")) << cli.output();
    EXPECT_TRUE(cli.read()) << "an interrupt ends the recording without a failure";

    std::istringstream text(cli.output());
    RecordingReader reader(text);
    std::vector<RecordingEvent> events;
    while (auto event = reader.next()) {
        std::visit([](auto& recorded) { recorded.time = 0; }, *event);
        events.push_back(*event);
    }
    EXPECT_EQ(events, (std::vector<RecordingEvent>{RecordedFrame{0, {{3, 0.5, 0.5}}}, RecordedClick{},
                                                   RecordedFrame{}}))
        << cli.output();
}

}  // namespace
}  // namespace ostrelle
