#include "platform/linux/touchpad_finder.h"

#include <libudev.h>

#include <cctype>
#include <optional>

#include "platform/linux/input_capabilities.h"

namespace ostrelle {
namespace {

struct DeviceRelease {
    void operator()(udev_device* device) const { udev_device_unref(device); }
};
using Device = std::unique_ptr<udev_device, DeviceRelease>;

struct EnumerateRelease {
    void operator()(udev_enumerate* enumerate) const { udev_enumerate_unref(enumerate); }
};

std::optional<CapabilityBits> attribute(udev_device* device, const char* name) {
    const char* value = udev_device_get_sysattr_value(device, name);
    if (value == nullptr) return std::nullopt;
    return CapabilityBits::parse(value);
}

}  // namespace

void TouchpadFinder::Release::operator()(udev* handle) const {
    udev_unref(handle);
}

TouchpadFinder::TouchpadFinder() : udev_(udev_new()) {}
TouchpadFinder::~TouchpadFinder() = default;

bool TouchpadFinder::isEventNode(const std::string& name) {
    constexpr std::string_view prefix = "event";
    if (name.size() <= prefix.size() || name.compare(0, prefix.size(), prefix) != 0) return false;
    for (std::size_t i = prefix.size(); i < name.size(); ++i)
        if (!std::isdigit(static_cast<unsigned char>(name[i]))) return false;
    return true;
}

std::vector<std::string> TouchpadFinder::touchpads() const {
    std::vector<std::string> nodes;
    if (!udev_) return nodes;
    const std::unique_ptr<udev_enumerate, EnumerateRelease> enumerate(udev_enumerate_new(udev_.get()));
    if (!enumerate) return nodes;
    udev_enumerate_add_match_subsystem(enumerate.get(), "input");
    udev_enumerate_add_match_sysname(enumerate.get(), "event*");
    udev_enumerate_scan_devices(enumerate.get());
    for (udev_list_entry* entry = udev_enumerate_get_list_entry(enumerate.get()); entry != nullptr;
         entry = udev_list_entry_get_next(entry)) {
        const Device device(udev_device_new_from_syspath(udev_.get(), udev_list_entry_get_name(entry)));
        if (!device) continue;
        const std::string sysname = udev_device_get_sysname(device.get());
        if (isEventNode(sysname) && classify(sysname) == Verdict::touchpad)
            nodes.push_back(std::string(inputFolder) + "/" + sysname);
    }
    return nodes;
}

TouchpadFinder::Verdict TouchpadFinder::classify(const std::string& sysname) const {
    if (!udev_) return Verdict::unknown;
    const Device device(udev_device_new_from_subsystem_sysname(udev_.get(), "input", sysname.c_str()));
    if (!device) return Verdict::unknown;
    if (udev_device_get_is_initialized(device.get()) != 0) {
        const char* touchpad = udev_device_get_property_value(device.get(), "ID_INPUT_TOUCHPAD");
        return touchpad != nullptr && std::string_view(touchpad) == "1" ? Verdict::touchpad : Verdict::other;
    }
    // The capabilities belong to the inputN device above the node.
    udev_device* parent = udev_device_get_parent_with_subsystem_devtype(device.get(), "input", nullptr);
    if (parent == nullptr) return Verdict::unknown;
    const auto absolute = attribute(parent, "capabilities/abs");
    const auto keys = attribute(parent, "capabilities/key");
    const auto properties = attribute(parent, "properties");
    if (!absolute || !keys || !properties) return Verdict::unknown;
    return looksLikeTouchpad(*absolute, *keys, *properties) ? Verdict::touchpad : Verdict::other;
}

}  // namespace ostrelle
