#include "engine/recording_playback.h"

namespace ostrelle {

RecordingPlayback::RecordingPlayback(MainQueue& queue, std::vector<RecordingEvent> events, EndHandler onEnd)
    : queue_(queue), events_(std::move(events)), onEnd_(std::move(onEnd)) {}

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
    if (next_ == events_.size()) {
        onEnd_();
        return;
    }
    const RecordingEvent& event = events_[next_++];
    const double time = timeOf(event);
    if (!offset_) offset_ = queue_.now() - time;
    scheduled_ = queue_.postAfter(time + *offset_ - queue_.now(), [this, &event] {
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

}  // namespace ostrelle
