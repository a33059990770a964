#include "touchpad/recording_text.h"

#include <fmt/format.h>

#include <charconv>
#include <limits>
#include <stdexcept>

namespace ostrelle::recording_text {

namespace {

// The kernel's EV_MAX and KEY_MAX: no event type or code goes beyond them.
constexpr std::int64_t maxEventType = 0x1f;
constexpr std::int64_t maxEventCode = 0x2ff;
// The multitouch axes: ABS_MT_TOUCH_MAJOR to ABS_MAX (the slot selector is no axis of a touch).
constexpr std::uint16_t firstMultitouchAxis = evdev::ABS_MT_TOUCH_MAJOR;

}  // namespace

std::string_view trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(" \t\r");
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

std::string_view withoutComment(std::string_view text) {
    return trimmed(text.substr(0, text.find('#')));
}

std::vector<std::string_view> fields(std::string_view text) {
    std::vector<std::string_view> result;
    std::size_t at = 0;
    while (true) {
        at = text.find_first_not_of(" \t,", at);
        if (at == std::string_view::npos) return result;
        const std::size_t end = std::min(text.find_first_of(" \t,", at), text.size());
        result.push_back(text.substr(at, end - at));
        at = end;
    }
}

std::int64_t integer(std::string_view field, std::string_view what, int base) {
    std::int64_t value = 0;
    const char* end = field.data() + field.size();
    const auto [stop, error] = std::from_chars(field.data(), end, value, base);
    if (field.empty() || error != std::errc() || stop != end) {
        throw std::invalid_argument(
            fmt::format("{} \"{}\" is not a{} number", what, field, base == 16 ? " hex" : ""));
    }
    return value;
}

std::int32_t int32(std::string_view field, std::string_view what, int base) {
    const std::int64_t value = integer(field, what, base);
    if (value < std::numeric_limits<std::int32_t>::min() ||
        value > std::numeric_limits<std::int32_t>::max()) {
        throw std::invalid_argument(fmt::format("{} {} is out of range", what, value));
    }
    return std::int32_t(value);
}

double seconds(std::string_view field) {
    double value = 0;
    const char* end = field.data() + field.size();
    const auto [stop, error] = std::from_chars(field.data(), end, value);
    if (field.empty() || error != std::errc() || stop != end || value < 0) {
        throw std::invalid_argument(fmt::format("time \"{}\" is not a time stamp", field));
    }
    return value;
}

std::uint16_t eventType(std::int64_t value) {
    if (value < 0 || value > maxEventType)
        throw std::invalid_argument(fmt::format("event type {} is out of range", value));
    return std::uint16_t(value);
}

std::uint16_t eventCode(std::int64_t value) {
    if (value < 0 || value > maxEventCode)
        throw std::invalid_argument(fmt::format("event code {} is out of range", value));
    return std::uint16_t(value);
}

std::optional<RecordedDevice> DeviceHeader::device() const {
    if (!seen) return std::nullopt;
    RecordedDevice device;
    TouchpadDescription& d = device.description;
    d.name = name;
    auto axis = [this](std::uint16_t code) -> std::optional<AxisRange> {
        const auto found = axes.find(code);
        return found == axes.end() ? std::nullopt : std::optional(found->second);
    };
    d.x = axis(evdev::ABS_MT_POSITION_X);
    d.y = axis(evdev::ABS_MT_POSITION_Y);
    if (const auto slots = axis(evdev::ABS_MT_SLOT)) d.slots = std::max(0, slots->maximum + 1);
    d.semiMultitouch = properties.contains(evdev::INPUT_PROP_SEMI_MT);
    for (const auto& [code, range] : axes) {
        if (code >= firstMultitouchAxis && code <= evdev::ABS_MAX)
            device.multitouchAxes.push_back({code, range});
    }
    return device;
}

}  // namespace ostrelle::recording_text
