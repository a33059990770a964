#pragma once

// What the evdev recording formats share: numbers in text, and the device their headers describe.

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "touchpad/evdev_recording.h"

namespace ostrelle::recording_text {

// Without spaces and tabs at either end.
std::string_view trimmed(std::string_view text);
// The text up to a '#' comment, trimmed.
std::string_view withoutComment(std::string_view text);
// The fields between spaces, tabs and commas.
std::vector<std::string_view> fields(std::string_view text);

// A whole field as a number in `base`; throws std::invalid_argument naming `what`.
std::int64_t integer(std::string_view field, std::string_view what, int base = 10);
std::int32_t int32(std::string_view field, std::string_view what, int base = 10);
// A time stamp in seconds ("1234.567890").
double seconds(std::string_view field);
// An event type and code within the kernel's ranges.
std::uint16_t eventType(std::int64_t value);
std::uint16_t eventCode(std::int64_t value);

// What a header has told so far of its device.
struct DeviceHeader {
    bool seen = false;  // any description line at all
    std::string name;
    std::map<std::uint16_t, AxisRange> axes;  // absolute axes by code
    std::set<int> properties;

    std::optional<RecordedDevice> device() const;
};

}  // namespace ostrelle::recording_text
