#pragma once

#include <optional>
#include <vector>

#include "engine/touch_source.h"

namespace ostrelle::testing {

// A trackpad the test drives by hand. It can refuse to start, as a system without permission does.
class FakeTouchSource final : public TouchSource {
public:
    std::optional<TouchSourceError> start(FrameHandler onFrame, ClickHandler onClick) override {
        stop();
        ++starts;
        if (refuse) return refuse;
        onFrame_ = std::move(onFrame);
        onClick_ = std::move(onClick);
        counts_ = {};
        return std::nullopt;
    }
    void stop() override {
        if (onFrame_) ++stops;
        onFrame_ = nullptr;
        onClick_ = nullptr;
    }
    EventCounts eventCounts() const override { return counts_; }

    bool isRunning() const { return static_cast<bool>(onFrame_); }
    // Delivers a frame, as the system would, only while started.
    void frame(const std::vector<Contact>& contacts, double time) {
        ++counts_.all;
        if (!contacts.empty()) ++counts_.touched;
        if (onFrame_) onFrame_(contacts, time);
    }
    void click(bool onOwnUI) {
        if (onClick_) onClick_(onOwnUI);
    }

    std::optional<TouchSourceError> refuse;
    int starts = 0;
    int stops = 0;

private:
    FrameHandler onFrame_;
    ClickHandler onClick_;
    EventCounts counts_;
};

}  // namespace ostrelle::testing
