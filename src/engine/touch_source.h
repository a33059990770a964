#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>

#include "recognition/contact.h"

namespace ostrelle {

// Why a touch source could not start; `description` is the text the user sees.
struct TouchSourceError {
    std::string description;

    // The one failure every platform shares: the system will not let us read the trackpad.
    static TouchSourceError permissionNeeded() {
        return {
            "Allow Accessibility in System Settings → Privacy & Security so Ostrelle can read the trackpad."};
    }
    friend bool operator==(const TouchSourceError&, const TouchSourceError&) = default;
};

// Where touch frames and physical clicks come from. Both callbacks run on the main thread only.
class TouchSource {
  public:
    // One frame: the contacts down now (no defined order; empty when every finger lifted) and its time.
    using FrameHandler = std::function<void(std::span<const Contact>, double)>;
    // A physical button press; true when the pointer was over one of our own windows.
    using ClickHandler = std::function<void(bool onOwnUI)>;

    struct EventCounts {
        std::int64_t all = 0;      // gesture events handled since the last start
        std::int64_t touched = 0;  // of them, those that carried at least one touch
        friend bool operator==(const EventCounts&, const EventCounts&) = default;
    };

    virtual ~TouchSource() = default;
    // Begins delivery, replacing an earlier start; nothing on success, the reason otherwise.
    virtual std::optional<TouchSourceError> start(FrameHandler onFrame, ClickHandler onClick) = 0;
    // Ends delivery and drops both callbacks. Safe when not started.
    virtual void stop() = 0;
    // Counted since the last start; readable from any thread.
    virtual EventCounts eventCounts() const = 0;
};

}  // namespace ostrelle
