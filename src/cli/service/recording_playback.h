#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <variant>

#include "engine/touch_source.h"
#include "recognition/recording.h"
#include "support/main_queue.h"

namespace ostrelle::cli {

// The events of a recording, one per call, nothing at its end. Throws std::runtime_error whose
// text is the whole message for a recording that cannot go on.
using NextRecordedEvent = std::function<std::optional<RecordingEvent>()>;

// A recording in any format replay reads; nothing, after printing why, when it cannot be read.
std::optional<NextRecordedEvent> openRecording(const std::filesystem::path& file);

// A touch source that plays a recording in real time on the main queue: each event at its
// recorded offset from the first, counted from the first start. Like a device, it keeps going
// while stopped and then delivers nothing. Tells `onEnd` once it has played out (nothing) or
// met a bad line (the message).
class RecordingPlayback final : public TouchSource {
  public:
    using EndHandler = std::function<void(const std::optional<std::string>& error)>;

    RecordingPlayback(MainQueue& queue, NextRecordedEvent next, EndHandler onEnd);
    ~RecordingPlayback() override;

    std::optional<TouchSourceError> start(FrameHandler onFrame, ClickHandler onClick) override;
    void stop() override;
    EventCounts eventCounts() const override { return counts_; }

    // The queue's time as a time of the recording, once playing.
    double recordingTime() const;

  private:
    void scheduleNext();
    void deliver(const RecordingEvent& event);

    MainQueue& queue_;
    NextRecordedEvent next_;
    EndHandler onEnd_;
    FrameHandler onFrame_;
    ClickHandler onClick_;
    EventCounts counts_;
    std::optional<double> offset_;  // queue time minus recording time
    TaskHandle scheduled_;
};

}  // namespace ostrelle::cli
