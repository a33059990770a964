#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace ostrelle {

// The range of one absolute axis, as the device declares it.
struct AxisRange {
    std::int32_t minimum = 0;
    std::int32_t maximum = 0;
    std::int32_t resolution = 0;  // units per millimetre; 0 when unknown

    friend bool operator==(const AxisRange&, const AxisRange&) = default;
};

// What the frame assembler needs to know of a touchpad: from the live device, or from the
// description at the head of a recording.
struct TouchpadDescription {
    std::string name;
    std::optional<AxisRange> x;   // ABS_MT_POSITION_X; absent: no multitouch positions
    std::optional<AxisRange> y;   // ABS_MT_POSITION_Y
    int slots = 0;                // ABS_MT_SLOT's maximum + 1; 0 when the device speaks protocol A
    bool semiMultitouch = false;  // INPUT_PROP_SEMI_MT: slots hold corners of the fingers' box

    friend bool operator==(const TouchpadDescription&, const TouchpadDescription&) = default;
};

}  // namespace ostrelle
