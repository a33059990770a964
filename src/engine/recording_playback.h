#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "engine/touch_source.h"
#include "recognition/recording.h"
#include "support/main_queue.h"

namespace ostrelle {

// A touch source that plays a recording in real time on the main queue: each event at its
// recorded offset from the first, counted from the first start. Like a device, it keeps going
// while stopped and then delivers nothing. Tells `onEnd` once it has played out.
class RecordingPlayback final : public TouchSource {
  public:
    using EndHandler = std::function<void()>;

    RecordingPlayback(MainQueue& queue, std::vector<RecordingEvent> events, EndHandler onEnd);
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
    std::vector<RecordingEvent> events_;
    std::size_t next_ = 0;
    EndHandler onEnd_;
    FrameHandler onFrame_;
    ClickHandler onClick_;
    EventCounts counts_;
    std::optional<double> offset_;  // queue time minus recording time
    TaskHandle scheduled_;
};

}  // namespace ostrelle
