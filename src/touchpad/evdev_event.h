#pragma once

#include <cstdint>

namespace ostrelle {

// One input event as the kernel's evdev interface reports it, with its time stamp in seconds.
struct EvdevEvent {
    double time = 0;
    std::uint16_t type = 0;
    std::uint16_t code = 0;
    std::int32_t value = 0;

    friend bool operator==(const EvdevEvent&, const EvdevEvent&) = default;
};

// The event types and codes a touchpad speaks (the kernel's input-event-codes values), spelled
// out here so that recordings replay the same on systems without the kernel's headers.
namespace evdev {
inline constexpr std::uint16_t EV_SYN = 0x00;
inline constexpr std::uint16_t EV_KEY = 0x01;
inline constexpr std::uint16_t EV_ABS = 0x03;

inline constexpr std::uint16_t SYN_REPORT = 0;
inline constexpr std::uint16_t SYN_MT_REPORT = 2;
inline constexpr std::uint16_t SYN_DROPPED = 3;

inline constexpr std::uint16_t BTN_LEFT = 0x110;
inline constexpr std::uint16_t BTN_RIGHT = 0x111;
inline constexpr std::uint16_t BTN_MIDDLE = 0x112;
inline constexpr std::uint16_t BTN_TOOL_FINGER = 0x145;
inline constexpr std::uint16_t BTN_TOOL_QUINTTAP = 0x148;
inline constexpr std::uint16_t BTN_TOUCH = 0x14a;
inline constexpr std::uint16_t BTN_TOOL_DOUBLETAP = 0x14d;
inline constexpr std::uint16_t BTN_TOOL_TRIPLETAP = 0x14e;
inline constexpr std::uint16_t BTN_TOOL_QUADTAP = 0x14f;

inline constexpr std::uint16_t ABS_X = 0x00;
inline constexpr std::uint16_t ABS_Y = 0x01;
inline constexpr std::uint16_t ABS_MT_SLOT = 0x2f;
inline constexpr std::uint16_t ABS_MT_TOUCH_MAJOR = 0x30;
inline constexpr std::uint16_t ABS_MT_POSITION_X = 0x35;
inline constexpr std::uint16_t ABS_MT_POSITION_Y = 0x36;
inline constexpr std::uint16_t ABS_MT_TOOL_TYPE = 0x37;
inline constexpr std::uint16_t ABS_MT_TRACKING_ID = 0x39;
inline constexpr std::uint16_t ABS_MT_PRESSURE = 0x3a;
inline constexpr std::uint16_t ABS_MAX = 0x3f;

inline constexpr std::int32_t MT_TOOL_FINGER = 0;
inline constexpr std::int32_t MT_TOOL_PALM = 2;

inline constexpr int INPUT_PROP_DIRECT = 0x01;
inline constexpr int INPUT_PROP_BUTTONPAD = 0x02;
inline constexpr int INPUT_PROP_SEMI_MT = 0x03;
}  // namespace evdev

}  // namespace ostrelle
