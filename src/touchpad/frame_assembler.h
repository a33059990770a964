#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "recognition/contact.h"
#include "touchpad/evdev_event.h"
#include "touchpad/touchpad_description.h"

namespace ostrelle {

// Turns one touchpad's evdev events (multitouch protocol B) into touch frames and physical
// clicks. Every recording format and the live device go through it, so a replay shows exactly
// what the live service would have seen. Pure: no device, no thread, no allocation per event.
class FrameAssembler {
  public:
    // Slots beyond this many are dropped as out of range.
    static constexpr int maxSlots = 32;
    // Contacts of one frame: the slots in use plus stand-ins up to five fingers.
    static constexpr int maxContacts = maxSlots + 5;

    // What one event produced: at a SYN_REPORT, maybe a frame (then `contacts()` holds it) and
    // the number of physical clicks to deliver after it.
    struct Output {
        bool frame = false;
        double time = 0;
        int clicks = 0;
    };

    // Why a device cannot be read as a touchpad (no multitouch position axes), or nothing.
    static std::optional<std::string> refusal(const TouchpadDescription& device);

    // `device` must pass `refusal`. Contact ids are `idBase` + tracking id; stand-ins take ids
    // above every tracking id, so ids stay unique across touchpads whose bases differ by
    // `idSpan`.
    FrameAssembler(const TouchpadDescription& device, std::int64_t idBase);
    static constexpr std::int64_t idSpan = std::int64_t{1} << 40;

    Output feed(const EvdevEvent& event);
    // The frame of the last Output with `frame` set.
    std::span<const Contact> contacts() const;

    // After a SYN_DROPPED on a live device the state comes afresh from the device: the caller
    // sets every slot (tracking id −1 for an empty one), the current slot and the finger count.
    void setSlot(int slot, std::int32_t trackingId, std::int32_t x, std::int32_t y, std::int32_t tool);
    void setCurrentSlot(int slot);
    void setFingerCount(int fingers);
};

}  // namespace ostrelle
