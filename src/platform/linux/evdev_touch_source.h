#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string_view>

#include "engine/touch_source.h"
#include "support/main_queue.h"

namespace ostrelle {

class TouchpadReader;

// The live touchpads on Linux, read through evdev. A thread of its own reads them and posts each
// report's frame and clicks to the main queue, where the handlers run, in the order read.
class EvdevTouchSource final : public TouchSource {
  public:
    static constexpr std::string_view noPermissionText =
        "Ostrelle may not read the touchpad. Run scripts/install.sh once: it lets the logged-in user read "
        "touchpads.";
    static constexpr std::string_view noTouchpadText =
        "No touchpad found. Connect a touchpad: Ostrelle starts reading it within seconds.";

    explicit EvdevTouchSource(MainQueue& mainQueue);
    ~EvdevTouchSource() override;
    EvdevTouchSource(const EvdevTouchSource&) = delete;
    EvdevTouchSource& operator=(const EvdevTouchSource&) = delete;

    // Tells whether the pointer is over one of our own windows when a click comes; without one,
    // never.
    void setOwnWindowCheck(std::function<bool()> check);

    std::optional<TouchSourceError> start(FrameHandler onFrame, ClickHandler onClick) override;
    void stop() override;
    EventCounts eventCounts() const override;
    // Touchpads being read now (0 while stopped); readable from any thread.
    int openTouchpads() const;

    // For tests: holds the reading thread before its next read (true) until released (false).
    void holdReaderForTesting(bool hold);

  private:
    // What posted tasks reach: the handlers of one start, dropped by the stop that ends it.
    struct Delivery {
        FrameHandler onFrame;
        ClickHandler onClick;
        std::function<bool()> ownWindowCheck;
        bool active = true;
    };
    struct Counts {
        mutable std::mutex mutex;
        EventCounts counts;
    };

    MainQueue& mainQueue_;
    std::function<bool()> ownWindowCheck_;
    std::shared_ptr<Delivery> delivery_;
    std::shared_ptr<Counts> counts_ = std::make_shared<Counts>();
    std::unique_ptr<TouchpadReader> reader_;
};

}  // namespace ostrelle
