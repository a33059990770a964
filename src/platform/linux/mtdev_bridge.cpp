#include "platform/linux/mtdev_bridge.h"

#include <mtdev-plumbing.h>

#include <cmath>
#include <stdexcept>

namespace ostrelle {

namespace {

// mtdev's queue holds this many events; a report never comes near it.
constexpr std::size_t releasedCapacity = 512;
constexpr double microsecondsPerSecond = 1e6;

input_event toKernel(const EvdevEvent& event) {
    input_event kernel{};
    const double whole = std::floor(event.time);
    kernel.input_event_sec = static_cast<decltype(kernel.input_event_sec)>(whole);
    kernel.input_event_usec = static_cast<decltype(kernel.input_event_usec)>(
        std::lround((event.time - whole) * microsecondsPerSecond));
    kernel.type = event.type;
    kernel.code = event.code;
    kernel.value = event.value;
    return kernel;
}

EvdevEvent fromKernel(const input_event& kernel) {
    return {double(kernel.input_event_sec) + double(kernel.input_event_usec) / microsecondsPerSecond,
            kernel.type, kernel.code, kernel.value};
}

}  // namespace

MtdevBridge::MtdevBridge(std::span<const MultitouchAxis> axes) : device_(mtdev_new()) {
    if (!device_ || mtdev_init(device_) != 0) {
        mtdev_delete(device_);
        throw std::runtime_error("cannot set up mtdev for a multitouch protocol A device");
    }
    // What mtdev_configure would read from a device node, taken from the description instead.
    for (const MultitouchAxis& axis : axes) {
        mtdev_set_mt_event(device_, axis.code, 1);
        mtdev_set_abs_minimum(device_, axis.code, axis.range.minimum);
        mtdev_set_abs_maximum(device_, axis.code, axis.range.maximum);
        mtdev_set_abs_resolution(device_, axis.code, axis.range.resolution);
    }
    // The kernel header's macros shadow evdev_event.h's names here, so they are used bare.
    device_->caps.has_mtdata =
        mtdev_has_mt_event(device_, ABS_MT_POSITION_X) && mtdev_has_mt_event(device_, ABS_MT_POSITION_Y);
    if (!mtdev_has_mt_event(device_, ABS_MT_TRACKING_ID)) {
        mtdev_set_abs_minimum(device_, ABS_MT_TRACKING_ID, MT_ID_MIN);
        mtdev_set_abs_maximum(device_, ABS_MT_TRACKING_ID, MT_ID_MAX);
    }
    released_.reserve(releasedCapacity);
}

MtdevBridge::~MtdevBridge() {
    mtdev_close_delete(device_);
}

std::span<const EvdevEvent> MtdevBridge::feed(const EvdevEvent& event) {
    released_.clear();
    const input_event kernel = toKernel(event);
    mtdev_put_event(device_, &kernel);
    while (!mtdev_empty(device_)) {
        input_event out{};
        mtdev_get_event(device_, &out);
        released_.push_back(fromKernel(out));
    }
    return released_;
}

}  // namespace ostrelle
