#include "uinput_device.h"

#include <libevdev/libevdev-uinput.h>
#include <libevdev/libevdev.h>

#include <array>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace ostrelle::testing {
namespace {

constexpr std::array<unsigned, 6> fingerTools = {
    0, BTN_TOOL_FINGER, BTN_TOOL_DOUBLETAP, BTN_TOOL_TRIPLETAP, BTN_TOOL_QUADTAP, BTN_TOOL_QUINTTAP};

void enableAxis(libevdev* device, unsigned code, std::int32_t maximum, std::int32_t minimum = 0,
                std::int32_t resolution = 12) {
    input_absinfo info{};
    info.minimum = minimum;
    info.maximum = maximum;
    info.resolution = resolution;
    libevdev_enable_event_code(device, EV_ABS, code, &info);
}

void check(int result, const char* what) {
    if (result < 0) throw std::runtime_error(std::string(what) + " failed: error " + std::to_string(-result));
}

}  // namespace

UinputDevice::UinputDevice(const DeviceShape& shape) : description_(libevdev_new()) {
    libevdev* device = description_;
    libevdev_set_name(device, shape.name.c_str());
    libevdev_enable_event_type(device, EV_KEY);
    if (shape.keyboard) {
        for (unsigned key = KEY_ESC; key <= KEY_D; ++key)
            libevdev_enable_event_code(device, EV_KEY, key, nullptr);
        create();
        return;
    }
    libevdev_enable_event_code(device, EV_KEY, BTN_LEFT, nullptr);
    libevdev_enable_event_code(device, EV_KEY, BTN_TOUCH, nullptr);
    for (std::size_t count = 1; shape.fingerTool && count < fingerTools.size(); ++count)
        libevdev_enable_event_code(device, EV_KEY, fingerTools[count], nullptr);
    enableAxis(device, ABS_X, 1000);
    enableAxis(device, ABS_Y, 600);
    if (shape.multitouch) {
        enableAxis(device, ABS_MT_POSITION_X, 1000);
        enableAxis(device, ABS_MT_POSITION_Y, 600);
        enableAxis(device, ABS_MT_SLOT, shape.slots - 1, 0, 0);
        enableAxis(device, ABS_MT_TRACKING_ID, 65535, 0, 0);
        enableAxis(device, ABS_MT_TOOL_TYPE, MT_TOOL_MAX, 0, 0);
    }
    libevdev_enable_property(device, shape.direct ? INPUT_PROP_DIRECT : INPUT_PROP_POINTER);
    if (!shape.direct) libevdev_enable_property(device, INPUT_PROP_BUTTONPAD);
    create();
}

UinputDevice::UinputDevice(const EvemuDescription& evemu) : description_(libevdev_new()) {
    std::ifstream file(evemu.path);
    if (!file) throw std::runtime_error("cannot read " + evemu.path);
    // "B: TYPE BYTE..." and "P: BYTE..." list a bitmap's bytes in order, possibly over several
    // lines of one type; axes come with their "A: CODE MIN MAX FUZZ FLAT RESOLUTION" lines.
    int lastType = -2;
    unsigned offset = 0;
    for (std::string line; std::getline(file, line);) {
        std::istringstream fields(line.size() > 2 ? line.substr(2) : "");
        std::string hex;
        if (line.starts_with("N: ")) libevdev_set_name(description_, line.substr(3).c_str());
        if (line.starts_with("A: ")) {
            std::int32_t minimum = 0, maximum = 0, fuzz = 0, flat = 0, resolution = 0;
            fields >> hex >> minimum >> maximum >> fuzz >> flat >> resolution;
            enableAxis(description_, static_cast<unsigned>(std::stoi(hex, nullptr, 16)), maximum, minimum,
                       resolution);
        }
        if (!line.starts_with("B: ") && !line.starts_with("P: ")) continue;
        int type = -1;
        if (line[0] == 'B' && fields >> hex) type = std::stoi(hex, nullptr, 16);
        if (type != lastType) offset = 0;
        lastType = type;
        for (; fields >> hex; ++offset) {
            const unsigned byte = static_cast<unsigned>(std::stoul(hex, nullptr, 16));
            for (unsigned bit = 0; bit < 8; ++bit) {
                if ((byte & (1U << bit)) == 0) continue;
                if (type < 0) libevdev_enable_property(description_, offset * 8 + bit);
                if (type > EV_SYN && type != EV_ABS)
                    libevdev_enable_event_code(description_, static_cast<unsigned>(type), offset * 8 + bit,
                                               nullptr);
            }
        }
    }
    create();
}

void UinputDevice::create() {
    libevdev_set_id_bustype(description_, BUS_VIRTUAL);
    check(libevdev_uinput_create_from_device(description_, LIBEVDEV_UINPUT_OPEN_MANAGED, &device_),
          "creating a uinput device");
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
    move(slot, x, y);
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
    const auto tool = [](int fingers) {
        return static_cast<std::uint16_t>(fingerTools.at(std::size_t(fingers)));
    };
    if (count == fingers_) return;
    if (fingers_ > 0) write(EV_KEY, tool(fingers_), 0);
    if (count > 0) write(EV_KEY, tool(count), 1);
    if ((count > 0) != (fingers_ > 0)) write(EV_KEY, BTN_TOUCH, count > 0 ? 1 : 0);
    fingers_ = count;
}

}  // namespace ostrelle::testing
