#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "actions/event_flags.h"
#include "actions/keyboard_layout.h"

namespace ostrelle {

// One modifier key as shortcuts show and store it.
struct KeyModifier {
    std::string name;   // as the bindings file writes it
    std::string glyph;  // as the user sees it
    EventFlags flag = 0;
};

// One keyboard shortcut: a virtual key code (the macOS numbering, on every platform) and the
// modifier flags held with it.
struct KeyShortcut {
    using KeyNames = std::map<std::int64_t, std::string>;

    // Only these modifier bits survive recording: shift, control, option and command.
    static constexpr EventFlags recordable = 0x1E0000;

    std::int64_t key = 0;
    EventFlags flags = 0;

    // Control, option, shift, command: the display order, which is also the order they are written in.
    static const std::vector<KeyModifier>& modifiers();

    // Fixed key names, consulted in this order before the keyboard layout is asked.
    static const KeyNames& functionKeys();
    static const KeyNames& arrowKeys();
    static const KeyNames& navigationKeys();
    static const KeyNames& otherKeys();

    // The name a keyboard layout gives a key, upper-cased; nothing for a blank or without a
    // layout. A key code outside 0…65535 is a programming error once a layout is asked.
    static std::optional<std::string> layoutName(std::int64_t key, const KeyboardLayout* layout);

    std::string glyphs() const;
    // Keys without a fixed name are named by the layout, or "Key N" without one.
    std::string keyName(const KeyboardLayout* layout) const;
    std::string display(const KeyboardLayout* layout) const;
    EventFlags eventFlags() const;
    bool isGlobal() const;
    std::uint32_t carbonModifiers() const;

    friend bool operator==(const KeyShortcut&, const KeyShortcut&) = default;
};

std::size_t hashOf(const KeyShortcut& shortcut);

}  // namespace ostrelle

template <>
struct std::hash<ostrelle::KeyShortcut> {
    std::size_t operator()(const ostrelle::KeyShortcut& shortcut) const noexcept {
        return ostrelle::hashOf(shortcut);
    }
};
