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

  private:
    struct Slot {
        std::int32_t trackingId = -1;
        std::int32_t x = 0;
        std::int32_t y = 0;
        std::int32_t tool = 0;
    };
    // What decides whether a frame changed: the contact's id and its position in device units.
    struct Key {
        std::int64_t id = 0;
        std::int32_t x = 0;
        std::int32_t y = 0;

        friend bool operator==(const Key&, const Key&) = default;
    };
    using Keys = std::array<Key, maxContacts>;

    Output report(double time);
    int fingerCount() const;
    int buildKeys(Keys& keys);

    AxisRange xRange_;
    AxisRange yRange_;
    std::int64_t idBase_ = 0;
    int slotCount_ = 0;
    std::array<Slot, maxSlots> slots_{};
    int currentSlot_ = 0;
    unsigned fingerTools_ = 0;  // bit n: the BTN_TOOL_* that reports n fingers is held
    int pendingClicks_ = 0;
    bool dropping_ = false;

    // Stand-ins in the order they appeared; each keeps its id while it exists.
    std::array<std::int64_t, 5> standInIds_{};
    int standIns_ = 0;
    std::int64_t nextStandIn_ = 0;

    Keys lastKeys_{};
    int lastCount_ = 0;
    Keys keys_{};
    std::array<Contact, maxContacts> contacts_{};
    int contactCount_ = 0;
};

}  // namespace ostrelle
