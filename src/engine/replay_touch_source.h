#pragma once

#include <span>

#include "engine/touch_source.h"

namespace ostrelle {

// A touch source fed from a recording instead of a device: the caller hands it each frame and
// click, and it passes them on while started, counting them as a device source would.
class ReplayTouchSource final : public TouchSource {
  public:
    std::optional<TouchSourceError> start(FrameHandler onFrame, ClickHandler onClick) override {
        onFrame_ = std::move(onFrame);
        onClick_ = std::move(onClick);
        counts_ = {};
        return std::nullopt;
    }
    void stop() override {
        onFrame_ = nullptr;
        onClick_ = nullptr;
    }
    EventCounts eventCounts() const override { return counts_; }

    void deliverFrame(std::span<const Contact> contacts, double time) {
        ++counts_.all;
        if (!contacts.empty()) ++counts_.touched;
        if (onFrame_) onFrame_(contacts, time);
    }
    void deliverClick(bool onOwnUI) {
        if (onClick_) onClick_(onOwnUI);
    }

  private:
    FrameHandler onFrame_;
    ClickHandler onClick_;
    EventCounts counts_;
};

}  // namespace ostrelle
