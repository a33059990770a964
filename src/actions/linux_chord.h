#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "actions/key_shortcut.h"
#include "support/linux_desktop.h"

namespace ostrelle {

// One key (or the left button) pressed with modifier keys held around it, in the Linux input
// numbering: what a Linux desktop means by "Ctrl+Shift+T".
struct LinuxChord {
    // Held in this order and let go in the reverse, so every chord is pressed the same way.
    enum Modifier : std::uint8_t {
        ctrl = 1U << 0U,
        alt = 1U << 1U,
        shift = 1U << 2U,
        super = 1U << 3U,
    };
    static constexpr std::uint8_t allModifiers = ctrl | alt | shift | super;

    std::uint8_t modifiers = 0;
    std::uint16_t key = 0;

    // "Ctrl+Shift+T", "Super", "Alt+Enter", "Ctrl+Click", "VolumeUp"; nothing for a name it doesn't
    // know or a modifier written twice.
    static std::optional<LinuxChord> parse(std::string_view text);
    // As the desktop writes it: "Ctrl+Shift+T"; KDE calls the Super key Meta.
    std::string display(LinuxDesktop desktop) const;

    friend bool operator==(const LinuxChord&, const LinuxChord&) = default;
};

// A shortcut of the bindings file (macOS key code and flags) as a Linux keyboard presses it:
// control, option, shift and command mean Ctrl, Alt, Shift and Super. Nothing for a key a PC
// keyboard lacks.
std::optional<LinuxChord> linuxChord(const KeyShortcut& shortcut);

// A key pressed on Linux (evdev key code and held modifiers), as the bindings file stores it; the
// text to show instead when the key has no Mac equivalent.
struct RecordedLinuxKey {
    std::optional<KeyShortcut> shortcut;
    std::string refusal;
};
RecordedLinuxKey shortcutFromLinux(std::uint16_t key, std::uint8_t modifiers);

// A stored shortcut as Linux writes it ("Ctrl+Shift+K"): keys without a fixed name are named by
// the layout, or "Key N" without one.
std::string linuxDisplay(const KeyShortcut& shortcut, const KeyboardLayout* layout, LinuxDesktop desktop);

}  // namespace ostrelle
