#include "uinput_device.h"

#include <libevdev/libevdev-uinput.h>
#include <libevdev/libevdev.h>

#include <array>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string_view>

namespace ostrelle::testing {
namespace {

constexpr std::array<unsigned, 6> fingerTools = {
    0, BTN_TOOL_FINGER, BTN_TOOL_DOUBLETAP, BTN_TOOL_TRIPLETAP, BTN_TOOL_QUADTAP, BTN_TOOL_QUINTTAP};

void enableAxis(libevdev* device, unsigned code, std::int32_t minimum, std::int32_t maximum,
                std::int32_t resolution = 0) {
    input_absinfo info{};
    info.minimum = minimum;
    info.maximum = maximum;
    info.resolution = resolution;
    libevdev_enable_event_code(device, EV_ABS, code, &info);
}

void check(int result, std::string_view what) {
    if (result < 0) throw std::runtime_error(std::string(what) + " failed: error " + std::to_string(-result));
}

// Reads the bitmaps of "B: TYPE BYTE..." and "P: BYTE..." lines, which list a bitmap's bytes
// in order, possibly over several lines of one type.
void enableBits(libevdev* device, std::istringstream& bytes, int type, int& offset) {
    std::string hex;
    while (bytes >> hex) {
        const unsigned value = static_cast<unsigned>(std::stoul(hex, nullptr, 16));
        for (unsigned bit = 0; bit < 8; ++bit) {
            if ((value & (1U << bit)) == 0) continue;
            const unsigned code = static_cast<unsigned>(offset) * 8 + bit;
            if (type < 0)
                libevdev_enable_property(device, code);
            else if (type != EV_ABS && type != EV_SYN)  // axes come with their A: ranges
                libevdev_enable_event_code(device, static_cast<unsigned>(type), code, nullptr);
        }
        ++offset;
    }
}

}  // namespace

UinputDevice::UinputDevice(libevdev* description) : description_(description) {
    libevdev_set_id_bustype(description_, BUS_VIRTUAL);
    check(libevdev_uinput_create_from_device(description_, LIBEVDEV_UINPUT_OPEN_MANAGED, &device_),
          "creating a uinput device");
}

UinputDevice::UinputDevice(const DeviceShape& shape)
    : UinputDevice([&shape] {
          libevdev* device = libevdev_new();
          libevdev_set_name(device, shape.name.c_str());
          libevdev_enable_event_type(device, EV_SYN);
          libevdev_enable_event_type(device, EV_KEY);
          if (shape.keyboard) {
              for (unsigned key = KEY_ESC; key <= KEY_D; ++key)
                  libevdev_enable_event_code(device, EV_KEY, key, nullptr);
              return device;
          }
          libevdev_enable_event_type(device, EV_ABS);
          libevdev_enable_event_code(device, EV_KEY, BTN_LEFT, nullptr);
          libevdev_enable_event_code(device, EV_KEY, BTN_TOUCH, nullptr);
          if (shape.fingerTool)
              for (std::size_t count = 1; count < fingerTools.size(); ++count)
                  libevdev_enable_event_code(device, EV_KEY, fingerTools[count], nullptr);
          enableAxis(device, ABS_X, 0, shape.xMaximum, 12);
          enableAxis(device, ABS_Y, 0, shape.yMaximum, 12);
          if (shape.multitouch) {
              enableAxis(device, ABS_MT_SLOT, 0, shape.slots - 1);
              enableAxis(device, ABS_MT_POSITION_X, 0, shape.xMaximum, 12);
              enableAxis(device, ABS_MT_POSITION_Y, 0, shape.yMaximum, 12);
              enableAxis(device, ABS_MT_TRACKING_ID, 0, 65535);
              enableAxis(device, ABS_MT_TOOL_TYPE, 0, MT_TOOL_MAX);
          }
          libevdev_enable_property(device, shape.direct ? INPUT_PROP_DIRECT : INPUT_PROP_POINTER);
          if (!shape.direct) libevdev_enable_property(device, INPUT_PROP_BUTTONPAD);
          return device;
      }()) {}

std::unique_ptr<UinputDevice> UinputDevice::fromEvemuDescription(const std::string& path) {
    std::ifstream file(path);
    if (!file) throw std::runtime_error("cannot read " + path);
    libevdev* device = libevdev_new();
    std::string line;
    int lastType = -2;
    int offset = 0;
    while (std::getline(file, line)) {
        if (line.size() < 3 || line[1] != ':') continue;
        std::istringstream fields(line.substr(2));
        switch (line[0]) {
            case 'N':
                libevdev_set_name(device, line.substr(3).c_str());
                break;
            case 'P':
            case 'B': {
                int type = -1;
                if (line[0] == 'B') {
                    std::string hex;
                    fields >> hex;
                    type = std::stoi(hex, nullptr, 16);
                }
                if (type != lastType) offset = 0;
                lastType = type;
                enableBits(device, fields, type, offset);
                break;
            }
            case 'A': {
                std::string code;
                std::int32_t minimum = 0, maximum = 0, fuzz = 0, flat = 0, resolution = 0;
                fields >> code >> minimum >> maximum >> fuzz >> flat >> resolution;
                enableAxis(device, static_cast<unsigned>(std::stoi(code, nullptr, 16)), minimum, maximum,
                           resolution);
                break;
            }
            default:
                break;
        }
    }
    return std::unique_ptr<UinputDevice>(new UinputDevice(device));
}

UinputDevice::~UinputDevice() {
    if (device_ != nullptr) libevdev_uinput_destroy(device_);
    libevdev_free(description_);
}

std::string UinputDevice::node() const {
    const char* node = libevdev_uinput_get_devnode(device_);
    return node == nullptr ? std::string() : std::string(node);
}

void UinputDevice::write(std::uint16_t type, std::uint16_t code, std::int32_t value) {
    check(libevdev_uinput_write_event(device_, type, code, value), "writing an event");
}

void UinputDevice::report() {
    write(EV_SYN, SYN_REPORT, 0);
}

void UinputDevice::touch(int slot, std::int32_t trackingId, std::int32_t x, std::int32_t y) {
    write(EV_ABS, ABS_MT_SLOT, slot);
    write(EV_ABS, ABS_MT_TRACKING_ID, trackingId);
    write(EV_ABS, ABS_MT_POSITION_X, x);
    write(EV_ABS, ABS_MT_POSITION_Y, y);
}

void UinputDevice::move(int slot, std::int32_t x, std::int32_t y) {
    write(EV_ABS, ABS_MT_SLOT, slot);
    write(EV_ABS, ABS_MT_POSITION_X, x);
    write(EV_ABS, ABS_MT_POSITION_Y, y);
}

void UinputDevice::lift(int slot) {
    write(EV_ABS, ABS_MT_SLOT, slot);
    write(EV_ABS, ABS_MT_TRACKING_ID, -1);
}

void UinputDevice::fingers(int count) {
    if (count == fingers_) return;
    if (fingers_ > 0)
        write(EV_KEY, static_cast<std::uint16_t>(fingerTools.at(static_cast<std::size_t>(fingers_))), 0);
    if (count > 0)
        write(EV_KEY, static_cast<std::uint16_t>(fingerTools.at(static_cast<std::size_t>(count))), 1);
    if ((count > 0) != (fingers_ > 0)) write(EV_KEY, BTN_TOUCH, count > 0 ? 1 : 0);
    fingers_ = count;
}

}  // namespace ostrelle::testing
