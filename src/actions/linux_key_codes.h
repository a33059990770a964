#pragma once

#include <cstdint>
#include <optional>

namespace ostrelle {

// Keys in the Linux input numbering (the evdev KEY_* and BTN_* codes), which uinput takes as they
// are and X11 takes shifted by 8.
namespace linux_key {
constexpr std::uint16_t leftCtrl = 29;
constexpr std::uint16_t leftShift = 42;
constexpr std::uint16_t leftAlt = 56;
constexpr std::uint16_t leftMeta = 125;  // the Super (Windows, Meta) key
constexpr std::uint16_t leftButton = 0x110;
}  // namespace linux_key

// A macOS virtual key code as the same key of a Linux keyboard; nothing for keys a PC keyboard
// lacks (fn). One bindings file serves both systems, so shortcuts keep the macOS numbering.
std::optional<std::uint16_t> linuxKeyCode(std::int64_t macKeyCode);
// The way back, for shortcuts recorded on Linux; nothing for keys a Mac keyboard lacks.
std::optional<std::int64_t> macKeyCode(std::uint16_t linuxKeyCode);

}  // namespace ostrelle
