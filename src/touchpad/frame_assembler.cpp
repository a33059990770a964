#include "touchpad/frame_assembler.h"

#include <algorithm>
#include <bit>

#include "support/contract.h"

namespace ostrelle {

namespace {

// Stand-in ids start above every tracking id the kernel can report (a 32-bit value).
constexpr std::int64_t standInIdOffset = std::int64_t{1} << 32;
constexpr std::int64_t standInIdCount = FrameAssembler::idSpan - standInIdOffset;

// The finger count each BTN_TOOL_* reports, 0 for other codes.
constexpr int fingersOfTool(std::uint16_t code) {
    switch (code) {
        case evdev::BTN_TOOL_FINGER:
            return 1;
        case evdev::BTN_TOOL_DOUBLETAP:
            return 2;
        case evdev::BTN_TOOL_TRIPLETAP:
            return 3;
        case evdev::BTN_TOOL_QUADTAP:
            return 4;
        case evdev::BTN_TOOL_QUINTTAP:
            return 5;
        default:
            return 0;
    }
}

double normalized(std::int32_t value, const AxisRange& range) {
    const double position = (double(value) - range.minimum) / (double(range.maximum) - range.minimum);
    return std::clamp(position, 0.0, 1.0);
}

std::string describedName(const TouchpadDescription& device) {
    return device.name.empty() ? std::string("the device") : "\"" + device.name + "\"";
}

}  // namespace

std::optional<std::string> FrameAssembler::refusal(const TouchpadDescription& device) {
    if (!device.x || !device.y) {
        return describedName(device) +
               " has no multitouch position axes (ABS_MT_POSITION_X/Y), so it cannot be read as a touchpad";
    }
    if (device.x->maximum <= device.x->minimum || device.y->maximum <= device.y->minimum) {
        return describedName(device) +
               " declares an empty range for its multitouch position axes, so it cannot be read as a "
               "touchpad";
    }
    return std::nullopt;
}

FrameAssembler::FrameAssembler(const TouchpadDescription& device, std::int64_t idBase)
    : xRange_(device.x.value_or(AxisRange{})),
      yRange_(device.y.value_or(AxisRange{})),
      idBase_(idBase),
      // Protocol A devices arrive through mtdev, which fills slots of its own numbering.
      slotCount_(device.slots > 0 ? std::min(device.slots, maxSlots) : maxSlots) {
    if (refusal(device)) contractViolation("frame assembler given a device without multitouch positions");
}

FrameAssembler::Output FrameAssembler::feed(const EvdevEvent& event) {
    if (dropping_) {
        if (event.type == evdev::EV_SYN && event.code == evdev::SYN_REPORT) dropping_ = false;
        return {};
    }
    switch (event.type) {
        case evdev::EV_SYN:
            if (event.code == evdev::SYN_REPORT) return report(event.time);
            if (event.code == evdev::SYN_DROPPED) {
                // The report in progress is incomplete: its clicks go with it.
                dropping_ = true;
                pendingClicks_ = 0;
            }
            return {};
        case evdev::EV_KEY:
            if (event.code == evdev::BTN_LEFT || event.code == evdev::BTN_RIGHT ||
                event.code == evdev::BTN_MIDDLE) {
                if (event.value == 1) ++pendingClicks_;
            } else if (const int fingers = fingersOfTool(event.code); fingers > 0) {
                const unsigned bit = 1u << fingers;
                fingerTools_ = event.value != 0 ? (fingerTools_ | bit) : (fingerTools_ & ~bit);
            }
            return {};
        case evdev::EV_ABS: {
            if (event.code == evdev::ABS_MT_SLOT) {
                // The kernel drops a slot outside the device's, so later events update the previous one.
                if (event.value >= 0 && event.value < slotCount_) currentSlot_ = event.value;
                return {};
            }
            Slot& slot = slots_[std::size_t(currentSlot_)];
            switch (event.code) {
                case evdev::ABS_MT_TRACKING_ID:
                    slot.trackingId = event.value;
                    break;
                case evdev::ABS_MT_POSITION_X:
                    slot.x = event.value;
                    break;
                case evdev::ABS_MT_POSITION_Y:
                    slot.y = event.value;
                    break;
                case evdev::ABS_MT_TOOL_TYPE:
                    slot.tool = event.value;
                    break;
                default:
                    break;
            }
            return {};
        }
        default:
            return {};
    }
}

int FrameAssembler::fingerCount() const {
    return fingerTools_ == 0 ? 0 : int(std::bit_width(fingerTools_)) - 1;
}

int FrameAssembler::buildKeys(Keys& keys) {
    int count = 0;
    int inUse = 0;
    const Slot* highest = nullptr;
    for (int i = 0; i < slotCount_; ++i) {
        const Slot& slot = slots_[std::size_t(i)];
        if (slot.trackingId < 0) continue;
        ++inUse;
        if (slot.tool == evdev::MT_TOOL_PALM) continue;
        keys[std::size_t(count++)] = {idBase_ + slot.trackingId, slot.x, slot.y};
        highest = &slot;
    }
    // Fingers the device counts but has no slot for move with the hand: they sit on the
    // contact in the highest slot.
    const int wanted = highest ? std::max(0, fingerCount() - inUse) : 0;
    for (; standIns_ < wanted; ++standIns_) {
        standInIds_[std::size_t(standIns_)] = idBase_ + standInIdOffset + nextStandIn_;
        nextStandIn_ = (nextStandIn_ + 1) % standInIdCount;
    }
    standIns_ = wanted;
    for (int i = 0; i < standIns_; ++i) {
        keys[std::size_t(count++)] = {standInIds_[std::size_t(i)], highest->x, highest->y};
    }
    return count;
}

FrameAssembler::Output FrameAssembler::report(double time) {
    Output output{false, time, pendingClicks_};
    pendingClicks_ = 0;
    const int count = buildKeys(keys_);
    if (count == lastCount_ && std::equal(keys_.begin(), keys_.begin() + count, lastKeys_.begin())) {
        return output;
    }
    std::copy(keys_.begin(), keys_.begin() + count, lastKeys_.begin());
    lastCount_ = count;
    for (int i = 0; i < count; ++i) {
        const Key& key = keys_[std::size_t(i)];
        contacts_[std::size_t(i)] = {key.id, normalized(key.x, xRange_), normalized(key.y, yRange_)};
    }
    contactCount_ = count;
    output.frame = true;
    return output;
}

std::span<const Contact> FrameAssembler::contacts() const {
    return {contacts_.data(), std::size_t(contactCount_)};
}

void FrameAssembler::setSlot(int slot, std::int32_t trackingId, std::int32_t x, std::int32_t y,
                             std::int32_t tool) {
    if (slot < 0 || slot >= slotCount_) return;
    slots_[std::size_t(slot)] = {trackingId, x, y, tool};
}

void FrameAssembler::setCurrentSlot(int slot) {
    if (slot >= 0 && slot < slotCount_) currentSlot_ = slot;
}

void FrameAssembler::setFingerCount(int fingers) {
    fingerTools_ = fingers >= 1 && fingers <= 5 ? 1u << fingers : 0u;
}

}  // namespace ostrelle
