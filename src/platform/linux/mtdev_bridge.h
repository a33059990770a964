#pragma once

#include <span>
#include <vector>

#include "touchpad/evdev_event.h"
#include "touchpad/evdev_recording.h"

struct mtdev;

namespace ostrelle {

// Turns the events of a device that speaks multitouch protocol A (anonymous contacts, no slots)
// into protocol B slots with tracking ids, through mtdev, so that the frame assembler reads it
// like any other touchpad.
class MtdevBridge {
  public:
    // `axes`: every multitouch axis the device declares. Throws std::runtime_error when mtdev
    // cannot be set up.
    explicit MtdevBridge(std::span<const MultitouchAxis> axes);
    ~MtdevBridge();
    MtdevBridge(const MtdevBridge&) = delete;
    MtdevBridge& operator=(const MtdevBridge&) = delete;

    // The events one input event releases (a whole report at its SYN_REPORT, else none),
    // valid until the next call.
    std::span<const EvdevEvent> feed(const EvdevEvent& event);

  private:
    ::mtdev* device_ = nullptr;
    std::vector<EvdevEvent> released_;
};

}  // namespace ostrelle
