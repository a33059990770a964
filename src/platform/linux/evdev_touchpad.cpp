#include "platform/linux/evdev_touchpad.h"

#include <fcntl.h>
#include <libevdev/libevdev.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <ctime>
#include <stdexcept>

namespace ostrelle {
namespace {

// The BTN_TOOL_* key held for each finger count, from one finger up.
constexpr std::array<unsigned, 5> fingerTools = {BTN_TOOL_FINGER, BTN_TOOL_DOUBLETAP, BTN_TOOL_TRIPLETAP,
                                                 BTN_TOOL_QUADTAP, BTN_TOOL_QUINTTAP};

std::optional<AxisRange> axis(const libevdev* device, unsigned code) {
    const input_absinfo* info = libevdev_get_abs_info(device, code);
    if (info == nullptr) return std::nullopt;
    return AxisRange{info->minimum, info->maximum, info->resolution};
}

EvdevEvent converted(const input_event& event) {
    return {static_cast<double>(event.input_event_sec) + static_cast<double>(event.input_event_usec) * 1e-6,
            event.type, event.code, event.value};
}

}  // namespace

TouchpadDescription EvdevTouchpad::describe(const libevdev* device) {
    TouchpadDescription description;
    if (const char* name = libevdev_get_name(device)) description.name = name;
    description.x = axis(device, ABS_MT_POSITION_X);
    description.y = axis(device, ABS_MT_POSITION_Y);
    description.slots = std::max(libevdev_get_num_slots(device), 0);
    description.semiMultitouch = libevdev_has_property(device, INPUT_PROP_SEMI_MT) != 0;
    return description;
}

std::vector<MultitouchAxis> EvdevTouchpad::multitouchAxes(const libevdev* device) {
    std::vector<MultitouchAxis> axes;
    for (unsigned code = ABS_MT_SLOT + 1; code <= ABS_MT_TOOL_Y; ++code)
        if (const auto range = axis(device, code)) axes.push_back({static_cast<std::uint16_t>(code), *range});
    return axes;
}

EvdevTouchpad::Opened EvdevTouchpad::open(const std::string& node, std::int64_t idBase) {
    const int fd = ::open(node.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) return {.error = errno};
    libevdev* device = nullptr;
    if (const int status = libevdev_new_from_fd(fd, &device); status < 0) {
        ::close(fd);
        return {.error = -status};
    }
    if (auto refusal = FrameAssembler::refusal(describe(device))) {
        libevdev_free(device);
        ::close(fd);
        return {.refusal = std::move(refusal)};
    }
    try {
        return {.touchpad = std::unique_ptr<EvdevTouchpad>(new EvdevTouchpad(node, fd, device, idBase))};
    } catch (const std::runtime_error& error) {
        return {.refusal = error.what()};
    }
}

EvdevTouchpad::EvdevTouchpad(std::string node, int fd, libevdev* device, std::int64_t idBase)
    : node_(std::move(node)),
      fd_(fd),
      device_(device),
      description_(describe(device)),
      assembler_(description_, idBase) {
    // Frame times must share the clock of everything else the engine times. The switch makes the
    // kernel report a SYN_DROPPED, after which the first read takes the device's state.
    if (description_.slots == 0) protocolA_ = std::make_unique<MtdevBridge>(multitouchAxes(device_));
    libevdev_set_clock_id(device_, CLOCK_MONOTONIC);
    // Fingers already down when the device is opened appear with its next report.
    takeDeviceState();
}

EvdevTouchpad::~EvdevTouchpad() {
    libevdev_free(device_);
    ::close(fd_);
}

bool EvdevTouchpad::read(const ReportSink& sink) {
    while (true) {
        input_event event{};
        const int status = libevdev_next_event(device_, LIBEVDEV_READ_FLAG_NORMAL, &event);
        if (status == -EAGAIN) return true;
        if (status == -EINTR) continue;
        if (status < 0) return false;  // ENODEV: unplugged
        if (status == LIBEVDEV_READ_STATUS_SYNC) {
            resynchronize(converted(event).time, sink);
        } else {
            feed(converted(event), sink);
        }
    }
}

void EvdevTouchpad::feed(const EvdevEvent& event, const ReportSink& sink) {
    if (!protocolA_) {
        feedAssembler(event, sink);
        return;
    }
    bool reported = false;
    for (const EvdevEvent& slotted : protocolA_->feed(event)) {
        reported = reported || (slotted.type == EV_SYN && slotted.code == SYN_REPORT);
        feedAssembler(slotted, sink);
    }
    // mtdev swallows a report in which no contact changed; it was read all the same, and a
    // replay of the same events through mtdev sees nothing there either.
    if (!reported && event.type == EV_SYN && event.code == SYN_REPORT) sink({false, event.time, 0});
}

void EvdevTouchpad::feedAssembler(const EvdevEvent& event, const ReportSink& sink) {
    const FrameAssembler::Output output = assembler_.feed(event);
    if (output.frame) {
        const auto contacts = assembler_.contacts();
        contacts_.assign(contacts.begin(), contacts.end());
    }
    if (event.type == EV_SYN && event.code == SYN_REPORT) sink({output.frame, output.time, output.clicks});
}

void EvdevTouchpad::resynchronize(double droppedAt, const ReportSink& sink) {
    // The report cut short by the drop goes, and libevdev's catching up brings its own state up
    // to date; the assembler then takes that state whole rather than the deltas.
    // mtdev keeps no state worth saving across the gap: a protocol A device resends every
    // contact in each report.
    assembler_.feed({droppedAt, EV_SYN, SYN_DROPPED, 0});
    double time = droppedAt;
    input_event event{};
    while (libevdev_next_event(device_, LIBEVDEV_READ_FLAG_SYNC, &event) == LIBEVDEV_READ_STATUS_SYNC)
        time = converted(event).time;
    assembler_.feed({time, EV_SYN, SYN_REPORT, 0});
    takeDeviceState();
    // A report of the fresh state: a frame if it differs from the last one delivered (fingers
    // lifted while events were lost end here).
    feed({time, EV_SYN, SYN_REPORT, 0}, sink);
}

void EvdevTouchpad::takeDeviceState() {
    const int slots = std::min(libevdev_get_num_slots(device_), FrameAssembler::maxSlots);
    for (int slot = 0; slot < slots; ++slot) {
        const auto value = [&](unsigned code) {
            return libevdev_get_slot_value(device_, static_cast<unsigned>(slot), code);
        };
        assembler_.setSlot(slot, value(ABS_MT_TRACKING_ID), value(ABS_MT_POSITION_X),
                           value(ABS_MT_POSITION_Y), value(ABS_MT_TOOL_TYPE));
    }
    if (slots > 0) assembler_.setCurrentSlot(libevdev_get_current_slot(device_));
    int fingers = 0;
    for (std::size_t count = 0; count < fingerTools.size(); ++count)
        if (libevdev_get_event_value(device_, EV_KEY, fingerTools[count]) != 0)
            fingers = static_cast<int>(count) + 1;
    assembler_.setFingerCount(fingers);
}

}  // namespace ostrelle
