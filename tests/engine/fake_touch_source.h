#pragma once

#include <optional>
#include <vector>

#include "engine/replay_touch_source.h"

namespace ostrelle::testing {

// A trackpad the test drives by hand, delivering only while started. It can refuse to start, as a
// system without permission does.
class FakeTouchSource final : public TouchSource {
  public:
    std::optional<TouchSourceError> start(FrameHandler onFrame, ClickHandler onClick) override {
        stop();
        ++starts;
        if (refuse) return refuse;
        running_ = true;
        return device_.start(std::move(onFrame), std::move(onClick));
    }
    void stop() override {
        running_ = false;
        device_.stop();
    }
    EventCounts eventCounts() const override { return device_.eventCounts(); }

    bool isRunning() const { return running_; }
    void frame(const std::vector<Contact>& contacts, double time) { device_.deliverFrame(contacts, time); }
    void click(bool onOwnUI) { device_.deliverClick(onOwnUI); }

    std::optional<TouchSourceError> refuse;
    int starts = 0;

  private:
    ReplayTouchSource device_;
    bool running_ = false;
};

}  // namespace ostrelle::testing
