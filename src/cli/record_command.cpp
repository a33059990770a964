// `record`: writes what the live touchpad delivers as a replay file, until interrupted.
#if defined(__linux__)

#include <fmt/format.h>
#include <poll.h>
#include <signal.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <iostream>
#include <optional>

#include "cli/commands.h"
#include "cli/output.h"
#include "platform/linux/evdev_touchpad.h"
#include "platform/linux/touchpad_finder.h"
#include "recognition/recording.h"

namespace ostrelle::cli {
namespace {

struct RecordOptions {
    std::optional<std::string> device;
    std::optional<std::string> output;
};

const Command& command();

// Why a touchpad cannot be recorded, in the words the user needs.
std::string openProblem(const std::string& node, const EvdevTouchpad::Opened& opened) {
    if (opened.refusal) return *opened.refusal;
    if (opened.error == EACCES || opened.error == EPERM)
        return fmt::format(
            "no permission to read {}: run scripts/install.sh, which lets the logged-in user read "
            "touchpads",
            node);
    if (opened.error == ENOENT) return fmt::format("{} does not exist", node);
    return fmt::format("cannot read {}: {}", node, std::strerror(opened.error));
}

void writeHeader(std::ostream& output, const std::string& node, const TouchpadDescription& device) {
    output << "# device: " << device.name << "\n# node: " << node << '\n';
    for (const auto& [name, axis] : {std::pair{"x", device.x}, std::pair{"y", device.y}})
        output << fmt::format("# {}: minimum {} maximum {} resolution {}\n", name, axis->minimum,
                              axis->maximum, axis->resolution);
    output << "# slots: " << device.slots << '\n';
}

// Reads until SIGINT or SIGTERM (taken through a signalfd, so the file is completed), or until
// the touchpad goes away.
int record(EvdevTouchpad& touchpad, std::ostream& output, int signals) {
    std::array<pollfd, 2> watched{{{touchpad.fd(), POLLIN, 0}, {signals, POLLIN, 0}}};
    while (true) {
        if (::poll(watched.data(), watched.size(), -1) < 0) {
            if (errno == EINTR) continue;
            printError(fmt::format("cannot wait for the touchpad: {}", std::strerror(errno)));
            return exitRefused;
        }
        if (watched[1].revents != 0) return exitSuccess;
        const bool present = touchpad.read([&](const EvdevTouchpad::Report& report) {
            if (report.frame)
                writeRecordingEvent(
                    output,
                    RecordedFrame{report.time, {touchpad.contacts().begin(), touchpad.contacts().end()}});
            for (int click = 0; click < report.clicks; ++click)
                writeRecordingEvent(output, RecordedClick{report.time, false});
            output.flush();
        });
        if (!present) {
            printError(fmt::format("{} went away", touchpad.node()));
            return exitRefused;
        }
    }
}

int runRecord(Arguments arguments) {
    RecordOptions options;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        if (isHelpOption(argument)) {
            printCommandUsage(command());
            return exitSuccess;
        }
        auto& target = argument == "--device" ? options.device : options.output;
        if (argument != "--device" && argument != "-o")
            return usageError(command(), argument.starts_with("-")
                                             ? fmt::format("unknown option {}", argument)
                                             : fmt::format("unexpected argument \"{}\"", argument));
        if (i + 1 == arguments.size()) return usageError(command(), fmt::format("{} needs a file", argument));
        if (target) return usageError(command(), fmt::format("{} given twice", argument));
        target = arguments[++i];
    }

    // Blocked before anything else runs, so that only the signalfd takes them.
    sigset_t ending;
    sigemptyset(&ending);
    sigaddset(&ending, SIGINT);
    sigaddset(&ending, SIGTERM);
    ::sigprocmask(SIG_BLOCK, &ending, nullptr);
    const int signals = ::signalfd(-1, &ending, SFD_CLOEXEC);

    std::string node;
    if (options.device) {
        node = *options.device;
    } else {
        const std::vector<std::string> touchpads = TouchpadFinder().touchpads();
        if (touchpads.empty()) {
            printError("no touchpad found; name one with --device /dev/input/eventN");
            return exitRefused;
        }
        node = touchpads.front();
    }
    const EvdevTouchpad::Opened opened = EvdevTouchpad::open(node, 0);
    if (!opened.touchpad) {
        printError(openProblem(node, opened));
        return exitRefused;
    }

    std::ofstream file;
    if (options.output) {
        file.open(*options.output);
        if (!file) {
            printError(fmt::format("cannot write {}: {}", *options.output, std::strerror(errno)));
            return exitRefused;
        }
    }
    std::ostream& output = options.output ? file : std::cout;
    writeHeader(output, node, opened.touchpad->description());
    output.flush();
    const int status = record(*opened.touchpad, output, signals);
    output.flush();
    ::close(signals);
    if (!output) {
        printError("the recording could not be written whole");
        return exitRefused;
    }
    return status;
}

const Command& command() {
    static const Command command{
        "record",
        "[--device PATH] [-o FILE]",
        "Writes what the touchpad (PATH, else the first one found) delivers as a recording for replay, "
        "to FILE or standard output, until interrupted (Ctrl-C).",
        runRecord,
    };
    return command;
}

}  // namespace

const Command& recordCommand() {
    return command();
}

}  // namespace ostrelle::cli

#endif
