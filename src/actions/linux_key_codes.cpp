#include "actions/linux_key_codes.h"

#include <algorithm>
#include <array>
#include <utility>

namespace ostrelle {
namespace {

struct KeyPair {
    std::int64_t mac;
    std::uint16_t evdev;
};

// Every macOS virtual key code with a US-ANSI meaning, sorted by it.
constexpr std::array keyPairs{
    KeyPair{0, 30},     // kVK_ANSI_A → KEY_A
    KeyPair{1, 31},     // kVK_ANSI_S → KEY_S
    KeyPair{2, 32},     // kVK_ANSI_D → KEY_D
    KeyPair{3, 33},     // kVK_ANSI_F → KEY_F
    KeyPair{4, 35},     // kVK_ANSI_H → KEY_H
    KeyPair{5, 34},     // kVK_ANSI_G → KEY_G
    KeyPair{6, 44},     // kVK_ANSI_Z → KEY_Z
    KeyPair{7, 45},     // kVK_ANSI_X → KEY_X
    KeyPair{8, 46},     // kVK_ANSI_C → KEY_C
    KeyPair{9, 47},     // kVK_ANSI_V → KEY_V
    KeyPair{10, 86},    // kVK_ISO_Section → KEY_102ND
    KeyPair{11, 48},    // kVK_ANSI_B → KEY_B
    KeyPair{12, 16},    // kVK_ANSI_Q → KEY_Q
    KeyPair{13, 17},    // kVK_ANSI_W → KEY_W
    KeyPair{14, 18},    // kVK_ANSI_E → KEY_E
    KeyPair{15, 19},    // kVK_ANSI_R → KEY_R
    KeyPair{16, 21},    // kVK_ANSI_Y → KEY_Y
    KeyPair{17, 20},    // kVK_ANSI_T → KEY_T
    KeyPair{18, 2},     // kVK_ANSI_1 → KEY_1
    KeyPair{19, 3},     // kVK_ANSI_2 → KEY_2
    KeyPair{20, 4},     // kVK_ANSI_3 → KEY_3
    KeyPair{21, 5},     // kVK_ANSI_4 → KEY_4
    KeyPair{22, 7},     // kVK_ANSI_6 → KEY_6
    KeyPair{23, 6},     // kVK_ANSI_5 → KEY_5
    KeyPair{24, 13},    // kVK_ANSI_Equal → KEY_EQUAL
    KeyPair{25, 10},    // kVK_ANSI_9 → KEY_9
    KeyPair{26, 8},     // kVK_ANSI_7 → KEY_7
    KeyPair{27, 12},    // kVK_ANSI_Minus → KEY_MINUS
    KeyPair{28, 9},     // kVK_ANSI_8 → KEY_8
    KeyPair{29, 11},    // kVK_ANSI_0 → KEY_0
    KeyPair{30, 27},    // kVK_ANSI_RightBracket → KEY_RIGHTBRACE
    KeyPair{31, 24},    // kVK_ANSI_O → KEY_O
    KeyPair{32, 22},    // kVK_ANSI_U → KEY_U
    KeyPair{33, 26},    // kVK_ANSI_LeftBracket → KEY_LEFTBRACE
    KeyPair{34, 23},    // kVK_ANSI_I → KEY_I
    KeyPair{35, 25},    // kVK_ANSI_P → KEY_P
    KeyPair{36, 28},    // kVK_Return → KEY_ENTER
    KeyPair{37, 38},    // kVK_ANSI_L → KEY_L
    KeyPair{38, 36},    // kVK_ANSI_J → KEY_J
    KeyPair{39, 40},    // kVK_ANSI_Quote → KEY_APOSTROPHE
    KeyPair{40, 37},    // kVK_ANSI_K → KEY_K
    KeyPair{41, 39},    // kVK_ANSI_Semicolon → KEY_SEMICOLON
    KeyPair{42, 43},    // kVK_ANSI_Backslash → KEY_BACKSLASH
    KeyPair{43, 51},    // kVK_ANSI_Comma → KEY_COMMA
    KeyPair{44, 53},    // kVK_ANSI_Slash → KEY_SLASH
    KeyPair{45, 49},    // kVK_ANSI_N → KEY_N
    KeyPair{46, 50},    // kVK_ANSI_M → KEY_M
    KeyPair{47, 52},    // kVK_ANSI_Period → KEY_DOT
    KeyPair{48, 15},    // kVK_Tab → KEY_TAB
    KeyPair{49, 57},    // kVK_Space → KEY_SPACE
    KeyPair{50, 41},    // kVK_ANSI_Grave → KEY_GRAVE
    KeyPair{51, 14},    // kVK_Delete → KEY_BACKSPACE
    KeyPair{53, 1},     // kVK_Escape → KEY_ESC
    KeyPair{54, 126},   // kVK_RightCommand → KEY_RIGHTMETA
    KeyPair{55, 125},   // kVK_Command → KEY_LEFTMETA
    KeyPair{56, 42},    // kVK_Shift → KEY_LEFTSHIFT
    KeyPair{57, 58},    // kVK_CapsLock → KEY_CAPSLOCK
    KeyPair{58, 56},    // kVK_Option → KEY_LEFTALT
    KeyPair{59, 29},    // kVK_Control → KEY_LEFTCTRL
    KeyPair{60, 54},    // kVK_RightShift → KEY_RIGHTSHIFT
    KeyPair{61, 100},   // kVK_RightOption → KEY_RIGHTALT
    KeyPair{62, 97},    // kVK_RightControl → KEY_RIGHTCTRL
    KeyPair{64, 187},   // kVK_F17 → KEY_F17
    KeyPair{65, 83},    // kVK_ANSI_KeypadDecimal → KEY_KPDOT
    KeyPair{67, 55},    // kVK_ANSI_KeypadMultiply → KEY_KPASTERISK
    KeyPair{69, 78},    // kVK_ANSI_KeypadPlus → KEY_KPPLUS
    KeyPair{71, 69},    // kVK_ANSI_KeypadClear → KEY_NUMLOCK
    KeyPair{72, 115},   // kVK_VolumeUp → KEY_VOLUMEUP
    KeyPair{73, 114},   // kVK_VolumeDown → KEY_VOLUMEDOWN
    KeyPair{74, 113},   // kVK_Mute → KEY_MUTE
    KeyPair{75, 98},    // kVK_ANSI_KeypadDivide → KEY_KPSLASH
    KeyPair{76, 96},    // kVK_ANSI_KeypadEnter → KEY_KPENTER
    KeyPair{78, 74},    // kVK_ANSI_KeypadMinus → KEY_KPMINUS
    KeyPair{79, 188},   // kVK_F18 → KEY_F18
    KeyPair{80, 189},   // kVK_F19 → KEY_F19
    KeyPair{81, 117},   // kVK_ANSI_KeypadEquals → KEY_KPEQUAL
    KeyPair{82, 82},    // kVK_ANSI_Keypad0 → KEY_KP0
    KeyPair{83, 79},    // kVK_ANSI_Keypad1 → KEY_KP1
    KeyPair{84, 80},    // kVK_ANSI_Keypad2 → KEY_KP2
    KeyPair{85, 81},    // kVK_ANSI_Keypad3 → KEY_KP3
    KeyPair{86, 75},    // kVK_ANSI_Keypad4 → KEY_KP4
    KeyPair{87, 76},    // kVK_ANSI_Keypad5 → KEY_KP5
    KeyPair{88, 77},    // kVK_ANSI_Keypad6 → KEY_KP6
    KeyPair{89, 71},    // kVK_ANSI_Keypad7 → KEY_KP7
    KeyPair{90, 190},   // kVK_F20 → KEY_F20
    KeyPair{91, 72},    // kVK_ANSI_Keypad8 → KEY_KP8
    KeyPair{92, 73},    // kVK_ANSI_Keypad9 → KEY_KP9
    KeyPair{93, 124},   // kVK_JIS_Yen → KEY_YEN
    KeyPair{94, 89},    // kVK_JIS_Underscore → KEY_RO
    KeyPair{95, 121},   // kVK_JIS_KeypadComma → KEY_KPCOMMA
    KeyPair{96, 63},    // kVK_F5 → KEY_F5
    KeyPair{97, 64},    // kVK_F6 → KEY_F6
    KeyPair{98, 65},    // kVK_F7 → KEY_F7
    KeyPair{99, 61},    // kVK_F3 → KEY_F3
    KeyPair{100, 66},   // kVK_F8 → KEY_F8
    KeyPair{101, 67},   // kVK_F9 → KEY_F9
    KeyPair{102, 123},  // kVK_JIS_Eisu → KEY_HANJA
    KeyPair{103, 87},   // kVK_F11 → KEY_F11
    KeyPair{104, 122},  // kVK_JIS_Kana → KEY_HANGEUL
    KeyPair{105, 183},  // kVK_F13 → KEY_F13
    KeyPair{106, 186},  // kVK_F16 → KEY_F16
    KeyPair{107, 184},  // kVK_F14 → KEY_F14
    KeyPair{109, 68},   // kVK_F10 → KEY_F10
    KeyPair{110, 127},  // kVK_ContextualMenu → KEY_COMPOSE
    KeyPair{111, 88},   // kVK_F12 → KEY_F12
    KeyPair{113, 185},  // kVK_F15 → KEY_F15
    KeyPair{114, 110},  // kVK_Help → KEY_INSERT
    KeyPair{115, 102},  // kVK_Home → KEY_HOME
    KeyPair{116, 104},  // kVK_PageUp → KEY_PAGEUP
    KeyPair{117, 111},  // kVK_ForwardDelete → KEY_DELETE
    KeyPair{118, 62},   // kVK_F4 → KEY_F4
    KeyPair{119, 107},  // kVK_End → KEY_END
    KeyPair{120, 60},   // kVK_F2 → KEY_F2
    KeyPair{121, 109},  // kVK_PageDown → KEY_PAGEDOWN
    KeyPair{122, 59},   // kVK_F1 → KEY_F1
    KeyPair{123, 105},  // kVK_LeftArrow → KEY_LEFT
    KeyPair{124, 106},  // kVK_RightArrow → KEY_RIGHT
    KeyPair{125, 108},  // kVK_DownArrow → KEY_DOWN
    KeyPair{126, 103},  // kVK_UpArrow → KEY_UP
};

static_assert(std::ranges::is_sorted(keyPairs, {}, &KeyPair::mac));

}  // namespace

std::optional<std::uint16_t> linuxKeyCode(std::int64_t macKeyCode) {
    const auto found = std::ranges::lower_bound(keyPairs, macKeyCode, {}, &KeyPair::mac);
    if (found == keyPairs.end() || found->mac != macKeyCode) return std::nullopt;
    return found->evdev;
}

std::optional<std::int64_t> macKeyCode(std::uint16_t linuxKeyCode) {
    const auto found = std::ranges::find(keyPairs, linuxKeyCode, &KeyPair::evdev);
    if (found == keyPairs.end()) return std::nullopt;
    return found->mac;
}

}  // namespace ostrelle
