#include "actions/linux_chord.h"

#include <algorithm>
#include <array>

#include "actions/linux_key_codes.h"

namespace ostrelle {
namespace {

struct NamedKey {
    std::string_view name;     // as the actions table writes it
    std::string_view display;  // as the desktop shows it
    std::uint16_t code;
    bool typesCharacter;  // the layout decides what it is called
};

constexpr std::array namedKeys{
    NamedKey{"A", "A", 30, true},
    NamedKey{"B", "B", 48, true},
    NamedKey{"C", "C", 46, true},
    NamedKey{"D", "D", 32, true},
    NamedKey{"E", "E", 18, true},
    NamedKey{"F", "F", 33, true},
    NamedKey{"G", "G", 34, true},
    NamedKey{"H", "H", 35, true},
    NamedKey{"I", "I", 23, true},
    NamedKey{"J", "J", 36, true},
    NamedKey{"K", "K", 37, true},
    NamedKey{"L", "L", 38, true},
    NamedKey{"M", "M", 50, true},
    NamedKey{"N", "N", 49, true},
    NamedKey{"O", "O", 24, true},
    NamedKey{"P", "P", 25, true},
    NamedKey{"Q", "Q", 16, true},
    NamedKey{"R", "R", 19, true},
    NamedKey{"S", "S", 31, true},
    NamedKey{"T", "T", 20, true},
    NamedKey{"U", "U", 22, true},
    NamedKey{"V", "V", 47, true},
    NamedKey{"W", "W", 17, true},
    NamedKey{"X", "X", 45, true},
    NamedKey{"Y", "Y", 21, true},
    NamedKey{"Z", "Z", 44, true},
    NamedKey{"1", "1", 2, true},
    NamedKey{"2", "2", 3, true},
    NamedKey{"3", "3", 4, true},
    NamedKey{"4", "4", 5, true},
    NamedKey{"5", "5", 6, true},
    NamedKey{"6", "6", 7, true},
    NamedKey{"7", "7", 8, true},
    NamedKey{"8", "8", 9, true},
    NamedKey{"9", "9", 10, true},
    NamedKey{"0", "0", 11, true},
    NamedKey{"Minus", "-", 12, true},
    NamedKey{"Equal", "=", 13, true},
    NamedKey{"LeftBrace", "[", 26, true},
    NamedKey{"RightBrace", "]", 27, true},
    NamedKey{"Semicolon", ";", 39, true},
    NamedKey{"Apostrophe", "'", 40, true},
    NamedKey{"Grave", "`", 41, true},
    NamedKey{"Backslash", "\\", 43, true},
    NamedKey{"Comma", ",", 51, true},
    NamedKey{"Period", ".", 52, true},
    NamedKey{"Slash", "/", 53, true},
    NamedKey{"Esc", "Esc", 1, false},
    NamedKey{"Backspace", "Backspace", 14, false},
    NamedKey{"Tab", "Tab", 15, false},
    NamedKey{"Enter", "Enter", 28, false},
    NamedKey{"Space", "Space", 57, false},
    NamedKey{"F1", "F1", 59, false},
    NamedKey{"F2", "F2", 60, false},
    NamedKey{"F3", "F3", 61, false},
    NamedKey{"F4", "F4", 62, false},
    NamedKey{"F5", "F5", 63, false},
    NamedKey{"F6", "F6", 64, false},
    NamedKey{"F7", "F7", 65, false},
    NamedKey{"F8", "F8", 66, false},
    NamedKey{"F9", "F9", 67, false},
    NamedKey{"F10", "F10", 68, false},
    NamedKey{"F11", "F11", 87, false},
    NamedKey{"F12", "F12", 88, false},
    NamedKey{"F13", "F13", 183, false},
    NamedKey{"F14", "F14", 184, false},
    NamedKey{"F15", "F15", 185, false},
    NamedKey{"F16", "F16", 186, false},
    NamedKey{"F17", "F17", 187, false},
    NamedKey{"F18", "F18", 188, false},
    NamedKey{"F19", "F19", 189, false},
    NamedKey{"F20", "F20", 190, false},
    NamedKey{"Print", "Print", 99, false},
    NamedKey{"Home", "Home", 102, false},
    NamedKey{"Up", "Up", 103, false},
    NamedKey{"PageUp", "Page Up", 104, false},
    NamedKey{"Left", "Left", 105, false},
    NamedKey{"Right", "Right", 106, false},
    NamedKey{"End", "End", 107, false},
    NamedKey{"Down", "Down", 108, false},
    NamedKey{"PageDown", "Page Down", 109, false},
    NamedKey{"Insert", "Insert", 110, false},
    NamedKey{"Delete", "Delete", 111, false},
    NamedKey{"Mute", "Mute", 113, false},
    NamedKey{"VolumeDown", "Volume Down", 114, false},
    NamedKey{"VolumeUp", "Volume Up", 115, false},
    NamedKey{"NextSong", "Next Track", 163, false},
    NamedKey{"PlayPause", "Play/Pause", 164, false},
    NamedKey{"PreviousSong", "Previous Track", 165, false},
    NamedKey{"BrightnessDown", "Brightness Down", 224, false},
    NamedKey{"BrightnessUp", "Brightness Up", 225, false},
    NamedKey{"Super", "Super", linux_key::leftMeta, false},
    NamedKey{"Click", "click", linux_key::leftButton, false},
};

struct ModifierName {
    std::string_view name;
    LinuxChord::Modifier modifier;
    EventFlags flag;  // what it stands for in a stored shortcut
};

// In the order they are held, which is also the order they are written in.
constexpr std::array modifierNames{
    ModifierName{"Ctrl", LinuxChord::ctrl, EventFlag::control},
    ModifierName{"Alt", LinuxChord::alt, EventFlag::option},
    ModifierName{"Shift", LinuxChord::shift, EventFlag::shift},
    ModifierName{"Super", LinuxChord::super, EventFlag::command},
};

constexpr std::string_view kdeSuperName = "Meta";
constexpr std::string_view unnamedKeyPrefix = "Key ";
constexpr std::string_view noMacKeyRefusal =
    "This key has no counterpart on a Mac keyboard, so the bindings file can't store it. Pick another key.";

const NamedKey* namedKey(std::uint16_t code) {
    const auto* found = std::ranges::find(namedKeys, code, &NamedKey::code);
    return found == namedKeys.end() ? nullptr : found;
}

std::string_view superName(LinuxDesktop desktop) {
    return desktop == LinuxDesktop::kde ? kdeSuperName : modifierNames.back().name;
}

std::string modifiersText(std::uint8_t modifiers, LinuxDesktop desktop) {
    std::string text;
    for (const ModifierName& modifier : modifierNames) {
        if ((modifiers & modifier.modifier) == 0) continue;
        text += modifier.modifier == LinuxChord::super ? superName(desktop) : modifier.name;
        text += '+';
    }
    return text;
}

}  // namespace

std::optional<LinuxChord> LinuxChord::parse(std::string_view text) {
    LinuxChord chord;
    while (true) {
        const auto plus = text.find('+');
        const std::string_view part = text.substr(0, plus);
        if (plus == std::string_view::npos) {
            const auto* key = std::ranges::find(namedKeys, part, &NamedKey::name);
            if (key == namedKeys.end()) return std::nullopt;
            chord.key = key->code;
            return chord;
        }
        const auto* modifier = std::ranges::find(modifierNames, part, &ModifierName::name);
        if (modifier == modifierNames.end() || (chord.modifiers & modifier->modifier) != 0)
            return std::nullopt;
        chord.modifiers |= modifier->modifier;
        text.remove_prefix(plus + 1);
    }
}

std::string LinuxChord::display(LinuxDesktop desktop) const {
    const NamedKey* named = namedKey(key);
    std::string keyText =
        named ? std::string(named->display) : std::string(unnamedKeyPrefix) + std::to_string(key);
    if (key == linux_key::leftMeta) keyText = superName(desktop);
    return modifiersText(modifiers, desktop) + keyText;
}

std::optional<LinuxChord> linuxChord(const KeyShortcut& shortcut) {
    const auto key = linuxKeyCode(shortcut.key);
    if (!key) return std::nullopt;
    LinuxChord chord{0, *key};
    for (const ModifierName& modifier : modifierNames) {
        if ((shortcut.flags & modifier.flag) != 0) chord.modifiers |= modifier.modifier;
    }
    return chord;
}

RecordedLinuxKey shortcutFromLinux(std::uint16_t key, std::uint8_t modifiers) {
    const auto macKey = macKeyCode(key);
    if (!macKey) return {std::nullopt, std::string(noMacKeyRefusal)};
    KeyShortcut shortcut{*macKey, 0};
    for (const ModifierName& modifier : modifierNames) {
        if ((modifiers & modifier.modifier) != 0) shortcut.flags |= modifier.flag;
    }
    return {shortcut, {}};
}

std::string linuxDisplay(const KeyShortcut& shortcut, const KeyboardLayout* layout, LinuxDesktop desktop) {
    std::uint8_t modifiers = 0;
    for (const ModifierName& modifier : modifierNames) {
        if ((shortcut.flags & modifier.flag) != 0) modifiers |= modifier.modifier;
    }
    const auto key = linuxKeyCode(shortcut.key);
    const NamedKey* named = key ? namedKey(*key) : nullptr;
    // Keys that type a character are named by the layout; without one, by what a US keyboard has there.
    std::optional<std::string> keyText;
    if (!named || named->typesCharacter) keyText = KeyShortcut::layoutName(shortcut.key, layout);
    if (!keyText && named) keyText = std::string(named->display);
    if (!keyText) keyText = std::string(unnamedKeyPrefix) + std::to_string(shortcut.key);
    return modifiersText(modifiers, desktop) + *keyText;
}

}  // namespace ostrelle
