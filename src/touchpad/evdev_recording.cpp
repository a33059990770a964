#include "touchpad/evdev_recording.h"

#include <fmt/format.h>

#include <array>
#include <stdexcept>

#include "recognition/recording.h"
#include "touchpad/recording_formats.h"
#include "touchpad/recording_text.h"

namespace ostrelle {

namespace {

struct Sign {
    std::string_view start;
    RecordingFormat format;
};

// How each format's files begin, as the tools write them and as users paste them.
constexpr std::array formatSigns{
    Sign{"# EVEMU", RecordingFormat::evemu},
    Sign{"# libinput record", RecordingFormat::libinputRecord},
    Sign{"N:", RecordingFormat::evemu},
    Sign{"I:", RecordingFormat::evemu},
    Sign{"E:", RecordingFormat::evemu},
    Sign{"Input driver version", RecordingFormat::evtest},
    Sign{"Input device ID:", RecordingFormat::evtest},
    Sign{"Input device name:", RecordingFormat::evtest},
    Sign{"Available devices:", RecordingFormat::evtest},
    Sign{"Event: time", RecordingFormat::evtest},
    Sign{"version:", RecordingFormat::libinputRecord},
    Sign{"ndevices:", RecordingFormat::libinputRecord},
    Sign{"libinput:", RecordingFormat::libinputRecord},
    Sign{"devices:", RecordingFormat::libinputRecord},
};

}  // namespace

std::string_view toString(RecordingFormat format) {
    switch (format) {
        case RecordingFormat::jsonLines:
            return "JSON lines";
        case RecordingFormat::evemu:
            return "evemu";
        case RecordingFormat::evtest:
            return "evtest";
        case RecordingFormat::libinputRecord:
            return "libinput record";
    }
    return "unknown";
}

std::optional<RecordingFormat> formatShownBy(std::string_view line) {
    const std::string_view text = recording_text::trimmed(line);
    if (text.empty()) return std::nullopt;
    for (const Sign& sign : formatSigns) {
        if (text.starts_with(sign.start)) return sign.format;
    }
    if (text.starts_with('#')) return std::nullopt;
    return RecordingFormat::jsonLines;
}

std::optional<EvdevEvent> EvdevRecordingReader::next() {
    if (pending_) {
        const EvdevEvent event = *pending_;
        pending_.reset();
        return event;
    }
    return readEvent();
}

void EvdevRecordingReader::readHeader() {
    pending_ = readEvent();
    device_ = describedDevice();
}

std::optional<EvdevEvent> EvdevRecordingReader::readEvent() {
    EvdevEvent event;
    while (!finished_ && std::getline(input_, text_)) {
        ++line_;
        try {
            if (takeLine(text_, event)) return event;
        } catch (const std::invalid_argument& problem) {
            throw RecordingError(line_, problem.what());
        }
    }
    if (input_.bad()) throw std::runtime_error(fmt::format("reading failed after line {}", line_));
    return std::nullopt;
}

std::unique_ptr<EvdevRecordingReader> openEvdevRecording(RecordingFormat format, std::istream& input) {
    switch (format) {
        case RecordingFormat::evemu:
            return openEvemu(input);
        case RecordingFormat::evtest:
            return openEvtest(input);
        case RecordingFormat::libinputRecord:
            return openLibinputRecord(input);
        case RecordingFormat::jsonLines:
            break;
    }
    throw std::logic_error("JSON lines are no evdev recording");
}

RecordedDevice readEvemuDescription(std::istream& input) {
    const auto reader = openEvemu(input);
    if (!reader->device()) throw RecordingError(reader->line(), "no device description (N: and A: lines)");
    return *reader->device();
}

}  // namespace ostrelle
