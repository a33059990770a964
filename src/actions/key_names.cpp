#include "actions/key_shortcut.h"

namespace ostrelle {

// The key codes are the macOS virtual key codes (kVK_…).

const std::vector<KeyModifier>& KeyShortcut::modifiers() {
    static const std::vector<KeyModifier> table{
        {"control", "⌃", EventFlag::control},
        {"option", "⌥", EventFlag::option},
        {"shift", "⇧", EventFlag::shift},
        {"command", "⌘", EventFlag::command},
    };
    return table;
}

const KeyShortcut::KeyNames& KeyShortcut::functionKeys() {
    static const KeyNames table{
        {0x7A, "F1"},  {0x78, "F2"},  {0x63, "F3"},  {0x76, "F4"},  {0x60, "F5"},
        {0x61, "F6"},  {0x62, "F7"},  {0x64, "F8"},  {0x65, "F9"},  {0x6D, "F10"},
        {0x67, "F11"}, {0x6F, "F12"}, {0x69, "F13"}, {0x6B, "F14"}, {0x71, "F15"},
        {0x6A, "F16"}, {0x40, "F17"}, {0x4F, "F18"}, {0x50, "F19"}, {0x5A, "F20"},
    };
    return table;
}

const KeyShortcut::KeyNames& KeyShortcut::arrowKeys() {
    static const KeyNames table{{0x7B, "←"}, {0x7C, "→"}, {0x7E, "↑"}, {0x7D, "↓"}};
    return table;
}

const KeyShortcut::KeyNames& KeyShortcut::navigationKeys() {
    static const KeyNames table{
        {0x73, "↖"},  // Home
        {0x77, "↘"},  // End
        {0x74, "⇞"},  // Page Up
        {0x79, "⇟"},  // Page Down
        {0x75, "⌦"},  // forward delete
    };
    return table;
}

const KeyShortcut::KeyNames& KeyShortcut::otherKeys() {
    static const KeyNames table{
        {0x35, "Esc"},   {0x24, "↩"},  // Return
        {0x4C, "⌤"},                   // keypad Enter
        {0x30, "⇥"},                   // Tab
        {0x31, "Space"}, {0x33, "⌫"},  // Delete
    };
    return table;
}

}  // namespace ostrelle
