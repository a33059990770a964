#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/linux/mtdev_bridge.h"
#include "recognition/contact.h"
#include "touchpad/frame_assembler.h"
#include "touchpad/touchpad_description.h"

struct libevdev;

namespace ostrelle {

// One open touchpad: its node read-only and non-blocking through libevdev (never grabbed, so
// the desktop keeps the pointer), on the monotonic clock, and the frame assembler its events go
// through.
class EvdevTouchpad {
  public:
    // An open touchpad, or why not: the errno of the open (EACCES: no permission) or the
    // assembler's refusal of the device.
    struct Opened {
        std::unique_ptr<EvdevTouchpad> touchpad{};
        int error = 0;
        std::optional<std::string> refusal{};
    };
    // Contact ids start at `idBase` (see FrameAssembler::idSpan).
    static Opened open(const std::string& node, std::int64_t idBase);
    ~EvdevTouchpad();
    EvdevTouchpad(const EvdevTouchpad&) = delete;
    EvdevTouchpad& operator=(const EvdevTouchpad&) = delete;

    const std::string& node() const { return node_; }
    int fd() const { return fd_; }
    const TouchpadDescription& description() const { return description_; }
    // The contacts of the last frame (empty before any).
    std::span<const Contact> contacts() const { return contacts_; }

    // What one SYN_REPORT produced: maybe a new frame (now in `contacts()`), then clicks.
    struct Report {
        bool frame = false;
        double time = 0;
        int clicks = 0;
    };
    using ReportSink = std::function<void(const Report&)>;
    // Reads everything waiting, handing `sink` each report; false once the device is gone.
    // After the kernel dropped events (SYN_DROPPED) the state is taken afresh from the device.
    bool read(const ReportSink& sink);

    // The description of a device libevdev has open, and every multitouch axis it declares.
    static TouchpadDescription describe(const libevdev* device);
    static std::vector<MultitouchAxis> multitouchAxes(const libevdev* device);

  private:
    EvdevTouchpad(std::string node, int fd, libevdev* device, std::int64_t idBase);
    void feed(const EvdevEvent& event, const ReportSink& sink);
    void feedAssembler(const EvdevEvent& event, const ReportSink& sink);
    void resynchronize(double droppedAt, const ReportSink& sink);
    // Hands the assembler libevdev's view of every slot and of the finger count.
    void takeDeviceState();

    std::string node_;
    int fd_ = -1;
    libevdev* device_ = nullptr;
    TouchpadDescription description_;
    FrameAssembler assembler_;
    std::unique_ptr<MtdevBridge> protocolA_;  // for a device without slots
    std::vector<Contact> contacts_;
};

}  // namespace ostrelle
