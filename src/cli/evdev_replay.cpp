#include "cli/evdev_replay.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <memory>
#include <stdexcept>

#include "cli/commands.h"
#include "cli/output.h"
#include "platform/linux/mtdev_bridge.h"
#include "support/log.h"
#include "touchpad/frame_assembler.h"
#include "touchpad/touchpad_notices.h"

namespace ostrelle::cli {

namespace {

// A problem already shown to the user: unwinds to the exit status.
struct Reported {};

RecordedDevice describedBy(const std::string& file) {
    std::ifstream input(file, std::ios::binary);
    if (!input) {
        printError(fmt::format("cannot open {}: {}", file, std::strerror(errno)));
        throw Reported{};
    }
    try {
        return readEvemuDescription(input);
    } catch (const RecordingError& error) {
        printError(fmt::format("{}:{}: {}", file, error.line(), error.problem()));
        throw Reported{};
    }
}

RecordedDevice deviceOf(const EvdevRecordingReader& reader, const std::string& name,
                        const std::optional<std::string>& deviceFile) {
    if (reader.device()) return *reader.device();
    if (deviceFile) return describedBy(*deviceFile);
    printError(
        fmt::format("{}:{}: the recording does not describe its device: give its evemu description with "
                    "--device DESC",
                    name, reader.line()));
    throw Reported{};
}

// Hands the assembler's output on: the frame, then the report's clicks.
class Delivery {
  public:
    Delivery(const RecordedDevice& device, const std::function<void(const RecordingEvent&)>& handle)
        : assembler_(device.description, 0), handle_(handle) {
        if (device.description.slots == 0) bridge_ = std::make_unique<MtdevBridge>(device.multitouchAxes);
    }

    // Throws std::invalid_argument when a report goes back in time.
    void feed(const EvdevEvent& event) {
        if (!bridge_) return deliver(event);
        for (const EvdevEvent& converted : bridge_->feed(event)) deliver(converted);
    }

  private:
    void deliver(const EvdevEvent& event) {
        const FrameAssembler::Output output = assembler_.feed(event);
        if (!output.frame && output.clicks == 0) return;
        if (lastTime_ && output.time < *lastTime_) {
            throw std::invalid_argument(
                fmt::format("time {} is before the previous report's {}", output.time, *lastTime_));
        }
        lastTime_ = output.time;
        if (output.frame) {
            const auto contacts = assembler_.contacts();
            handle_(RecordedFrame{output.time, {contacts.begin(), contacts.end()}});
        }
        for (int i = 0; i < output.clicks; ++i) handle_(RecordedClick{output.time, false});
    }

    FrameAssembler assembler_;
    std::unique_ptr<MtdevBridge> bridge_;
    const std::function<void(const RecordingEvent&)>& handle_;
    std::optional<double> lastTime_;
};

}  // namespace

int forEachAssembledEvent(std::istream& input, const std::string& name, RecordingFormat format,
                          const std::optional<std::string>& deviceFile,
                          const std::function<void(const RecordingEvent&)>& handle) {
    std::size_t line = 0;
    try {
        const auto reader = openEvdevRecording(format, input);
        line = reader->line();
        const RecordedDevice device = deviceOf(*reader, name, deviceFile);
        if (const auto refusal = FrameAssembler::refusal(device.description)) {
            printError(fmt::format("{}: {}", name, *refusal));
            return exitBadInput;
        }
        if (const auto notice = limitationNotice(device.description)) Log::warning(*notice);
        Delivery delivery(device, handle);
        while (const auto event = reader->next()) {
            line = reader->line();
            delivery.feed(*event);
        }
    } catch (const Reported&) {
        return exitBadInput;
    } catch (const RecordingError& error) {
        printError(fmt::format("{}:{}: {}", name, error.line(), error.problem()));
        return exitBadInput;
    } catch (const std::invalid_argument& error) {
        printError(fmt::format("{}:{}: {}", name, line, error.what()));
        return exitBadInput;
    } catch (const std::runtime_error& error) {
        printError(fmt::format("{}: {}", name, error.what()));
        return exitBadInput;
    }
    return exitSuccess;
}

}  // namespace ostrelle::cli
