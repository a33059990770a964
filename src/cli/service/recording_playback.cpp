#include "cli/service/recording_playback.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <vector>

#include "cli/commands.h"
#include "cli/output.h"
#include "cli/recording_loop.h"

namespace ostrelle::cli {

std::optional<NextRecordedEvent> openRecording(const std::filesystem::path& file) {
    if (std::filesystem::is_directory(file)) {
        printError(fmt::format("{}: is a directory", file.string()));
        return std::nullopt;
    }
    std::ifstream input(file, std::ios::binary);
    if (!input) {
        printError(fmt::format("cannot open {}: {}", file.string(), std::strerror(errno)));
        return std::nullopt;
    }
    // Read whole before the service starts, in whichever format, so that a bad line is refused
    // up front rather than halfway through a demo.
    auto events = std::make_shared<std::vector<RecordingEvent>>();
    if (forEachRecordedEvent(input, file.string(), std::nullopt,
                             [&](const RecordingEvent& event) { events->push_back(event); }) != exitSuccess)
        return std::nullopt;
    return NextRecordedEvent([events, next = std::size_t{0}]() mutable -> std::optional<RecordingEvent> {
        if (next == events->size()) return std::nullopt;
        return (*events)[next++];
    });
}

RecordingPlayback::RecordingPlayback(MainQueue& queue, NextRecordedEvent next, EndHandler onEnd)
    : queue_(queue), next_(std::move(next)), onEnd_(std::move(onEnd)) {}

RecordingPlayback::~RecordingPlayback() {
    scheduled_.cancel();
}

std::optional<TouchSourceError> RecordingPlayback::start(FrameHandler onFrame, ClickHandler onClick) {
    onFrame_ = std::move(onFrame);
    onClick_ = std::move(onClick);
    counts_ = {};
    if (!offset_) scheduleNext();
    return std::nullopt;
}

void RecordingPlayback::stop() {
    onFrame_ = nullptr;
    onClick_ = nullptr;
}

double RecordingPlayback::recordingTime() const {
    return queue_.now() - offset_.value_or(0);
}

void RecordingPlayback::scheduleNext() {
    std::optional<RecordingEvent> event;
    try {
        event = next_();
    } catch (const std::runtime_error& error) {
        onEnd_(error.what());
        return;
    }
    if (!event) {
        onEnd_(std::nullopt);
        return;
    }
    const double time = timeOf(*event);
    if (!offset_) offset_ = queue_.now() - time;
    scheduled_ = queue_.postAfter(time + *offset_ - queue_.now(), [this, event = std::move(*event)] {
        deliver(event);
        scheduleNext();
    });
}

void RecordingPlayback::deliver(const RecordingEvent& event) {
    if (const auto* frame = std::get_if<RecordedFrame>(&event)) {
        ++counts_.all;
        if (!frame->contacts.empty()) ++counts_.touched;
        // On the queue's clock, as a live device's frames are.
        if (onFrame_) onFrame_(frame->contacts, frame->time + *offset_);
    } else if (onClick_) {
        onClick_(std::get<RecordedClick>(event).overOwnWindow);
    }
}

}  // namespace ostrelle::cli
