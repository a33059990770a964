#pragma once

#include <cstdint>
#include <memory>
#include <string>

struct libevdev;
struct libevdev_uinput;

namespace ostrelle::testing {

// The shape of a made-up input device: by default a clickpad with five slots.
struct DeviceShape {
    std::string name = "Ostrelle test touchpad";
    int slots = 5;
    std::int32_t xMaximum = 1000;
    std::int32_t yMaximum = 600;
    bool multitouch = true;  // ABS_MT_* axes, else single-touch ABS_X/Y only
    bool fingerTool = true;  // BTN_TOOL_FINGER..QUINTTAP
    bool direct = false;     // INPUT_PROP_DIRECT: a touch screen
    bool keyboard = false;   // a few keys and nothing else
};

// A device made with uinput, as the kernel shows any other; gone when this is destroyed. Events
// go out as written, so callers write what a driver would (the kernel drops unchanged values).
class UinputDevice {
  public:
    explicit UinputDevice(const DeviceShape& shape);
    // A device with the capabilities of an evemu description file (N:, I:, P:, B:, A: lines).
    static std::unique_ptr<UinputDevice> fromEvemuDescription(const std::string& path);
    ~UinputDevice();
    UinputDevice(const UinputDevice&) = delete;
    UinputDevice& operator=(const UinputDevice&) = delete;

    // /dev/input/eventN
    std::string node() const;

    void write(std::uint16_t type, std::uint16_t code, std::int32_t value);
    void report();

    // A driver's way of telling one finger's story, without the SYN_REPORT.
    void touch(int slot, std::int32_t trackingId, std::int32_t x, std::int32_t y);
    void move(int slot, std::int32_t x, std::int32_t y);
    void lift(int slot);
    // BTN_TOUCH and the BTN_TOOL_* key of this many fingers (0: none).
    void fingers(int count);

  private:
    explicit UinputDevice(libevdev* description);
    libevdev* description_ = nullptr;
    libevdev_uinput* device_ = nullptr;
    int fingers_ = 0;
};

}  // namespace ostrelle::testing
