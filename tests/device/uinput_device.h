#pragma once

#include <cstdint>
#include <memory>
#include <string>

struct libevdev;
struct libevdev_uinput;

namespace ostrelle::testing {

// The shape of a made-up input device: by default a clickpad with five slots, 1000 by 600.
struct DeviceShape {
    std::string name = "Ostrelle test touchpad";
    int slots = 5;
    bool multitouch = true;  // ABS_MT_* axes, else single-touch ABS_X/Y only
    bool fingerTool = true;  // BTN_TOOL_FINGER..QUINTTAP
    bool direct = false;     // INPUT_PROP_DIRECT: a touch screen
    bool keyboard = false;   // a few keys and nothing else
};

// An evemu description file: N:, P:, B: and A: lines.
struct EvemuDescription {
    std::string path;
};

// A device made with uinput, as the kernel shows any other; gone when this is destroyed. Events
// go out as written, so callers write what a driver would (the kernel drops unchanged values).
class UinputDevice {
  public:
    explicit UinputDevice(const DeviceShape& shape = {});
    explicit UinputDevice(const EvemuDescription& description);
    ~UinputDevice();
    UinputDevice(const UinputDevice&) = delete;
    UinputDevice& operator=(const UinputDevice&) = delete;

    std::string node() const;  // /dev/input/eventN
    void write(std::uint16_t type, std::uint16_t code, std::int32_t value);
    void report();

    // A driver's way of telling one finger's story, without the SYN_REPORT.
    void touch(int slot, std::int32_t trackingId, std::int32_t x, std::int32_t y);
    void move(int slot, std::int32_t x, std::int32_t y);
    void lift(int slot);
    // BTN_TOUCH and the BTN_TOOL_* key of this many fingers (0: none).
    void fingers(int count);

  private:
    void create();
    libevdev* description_ = nullptr;
    libevdev_uinput* device_ = nullptr;
    int fingers_ = 0;
};

}  // namespace ostrelle::testing
