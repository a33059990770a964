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

using testing::UinputDevice;

constexpr auto outputLimit = std::chrono::seconds(5);

// ostrelle-cli with its standard output on a pipe the test reads as it goes.
class RunningCLI {
  public:
    explicit RunningCLI(const std::vector<std::string>& arguments) {
        int pipe[2];
        if (::pipe(pipe) != 0) return;
        pid_ = ::fork();
        if (pid_ == 0) {
            ::dup2(pipe[1], STDOUT_FILENO);
            ::close(pipe[0]);
            ::close(pipe[1]);
            std::vector<char*> argv;
            std::string program = std::getenv("OSTRELLE_CLI");
            argv.push_back(program.data());
            std::vector<std::string> copies = arguments;
            for (std::string& argument : copies) argv.push_back(argument.data());
            argv.push_back(nullptr);
            ::execv(program.c_str(), argv.data());
            ::_exit(127);
        }
        ::close(pipe[1]);
        output_ = pipe[0];
    }
    ~RunningCLI() {
        if (pid_ > 0 && status_ < 0) {
            ::kill(pid_, SIGKILL);
            ::waitpid(pid_, nullptr, 0);
        }
        if (output_ >= 0) ::close(output_);
    }

    // Reads until the output holds `text`; false if it did not come within the limit.
    bool waitForOutput(const std::string& text) {
        const auto deadline = std::chrono::steady_clock::now() + outputLimit;
        while (read_.find(text) == std::string::npos) {
            const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
                deadline - std::chrono::steady_clock::now());
            pollfd watched{output_, POLLIN, 0};
            if (left.count() <= 0 || ::poll(&watched, 1, static_cast<int>(left.count())) <= 0) return false;
            char buffer[4096];
            const ssize_t length = ::read(output_, buffer, sizeof buffer);
            if (length <= 0) return false;
            read_.append(buffer, static_cast<std::size_t>(length));
        }
        return true;
    }

    // Interrupts it and reads the rest; its exit status.
    int interrupt() {
        ::kill(pid_, SIGINT);
        char buffer[4096];
        ssize_t length = 0;
        while ((length = ::read(output_, buffer, sizeof buffer)) > 0)
            read_.append(buffer, static_cast<std::size_t>(length));
        int status = 0;
        ::waitpid(pid_, &status, 0);
        status_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
        return status_;
    }

    const std::string& output() const { return read_; }

  private:
    pid_t pid_ = -1;
    int output_ = -1;
    int status_ = -1;
    std::string read_;
};

TEST(RecordCommand, WritesTheTouchpadAsARecordingUntilInterrupted) {
    if (std::getenv("OSTRELLE_CLI") == nullptr) GTEST_SKIP() << "OSTRELLE_CLI names no ostrelle-cli";
    UinputDevice pad({.name = "Recorded pad", .xMaximum = 1000, .yMaximum = 600});
    RunningCLI cli({"record", "--device", pad.node()});
    ASSERT_TRUE(cli.waitForOutput("# slots: 5\n")) << cli.output();
    EXPECT_NE(cli.output().find("# device: Recorded pad\n"), std::string::npos) << cli.output();
    EXPECT_NE(cli.output().find("# x: minimum 0 maximum 1000"), std::string::npos) << cli.output();

    pad.touch(0, 3, 500, 300);
    pad.fingers(1);
    pad.report();
    pad.write(evdev::EV_KEY, evdev::BTN_LEFT, 1);
    pad.report();
    pad.lift(0);
    pad.fingers(0);
    pad.write(evdev::EV_KEY, evdev::BTN_LEFT, 0);
    pad.report();
    ASSERT_TRUE(cli.waitForOutput("\"touches\": []")) << cli.output();
    EXPECT_EQ(cli.interrupt(), 0);

    std::istringstream text(cli.output());
    RecordingReader reader(text);
    std::vector<RecordingEvent> events;
    while (auto event = reader.next()) events.push_back(*event);
    ASSERT_EQ(events.size(), 3U) << cli.output();
    const auto* down = std::get_if<RecordedFrame>(&events[0]);
    ASSERT_NE(down, nullptr);
    EXPECT_EQ(down->contacts, (std::vector<Contact>{{3, 0.5, 0.5}}));
    EXPECT_TRUE(std::holds_alternative<RecordedClick>(events[1]));
    const auto* up = std::get_if<RecordedFrame>(&events[2]);
    ASSERT_NE(up, nullptr);
    EXPECT_TRUE(up->contacts.empty());
}

}  // namespace
}  // namespace ostrelle
