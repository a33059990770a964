#include "actions/key_shortcut.h"

#include <limits>

#include "support/contract.h"
#include "support/point.h"
#include "support/unicode_text.h"

namespace ostrelle {
namespace {

constexpr std::string_view unnamedKeyPrefix = "Key ";

// Any of these makes a shortcut safe as a system-wide hot key; shift alone does not.
constexpr EventFlags globalModifiers = EventFlag::control | EventFlag::option | EventFlag::command;

bool contains(const KeyShortcut::KeyNames& table, std::int64_t key) {
    return table.find(key) != table.end();
}

}  // namespace

std::optional<std::string> KeyShortcut::layoutName(std::int64_t key, const KeyboardLayout* layout) {
    if (!layout) return std::nullopt;
    if (key < 0 || key > std::numeric_limits<std::uint16_t>::max()) {
        contractViolation("key code outside 0...65535 given to the keyboard layout");
    }
    const auto characters = layout->characters(static_cast<std::uint16_t>(key));
    if (!characters || characters->empty()) return std::nullopt;
    std::string name = uppercased(*characters);
    // Blankness is judged on the trimmed text, but the name keeps its spaces: deliberate.
    if (isBlank(name)) return std::nullopt;
    return name;
}

std::string KeyShortcut::glyphs() const {
    std::string result;
    for (const KeyModifier& modifier : modifiers()) {
        if ((flags & modifier.flag) == modifier.flag) result += modifier.glyph;
    }
    return result;
}

std::string KeyShortcut::keyName(const KeyboardLayout* layout) const {
    // The fixed tables win over the layout, so Space and Esc never take a layout's name.
    for (const KeyNames* table : {&functionKeys(), &arrowKeys(), &navigationKeys(), &otherKeys()}) {
        const auto it = table->find(key);
        if (it != table->end()) return it->second;
    }
    if (auto name = layoutName(key, layout)) return *name;
    return std::string(unnamedKeyPrefix) + std::to_string(key);
}

std::string KeyShortcut::display(const KeyboardLayout* layout) const {
    return glyphs() + keyName(layout);
}

EventFlags KeyShortcut::eventFlags() const {
    // A physical keyboard sets these bits on these keys; synthesized events copy it so that they match
    // shortcuts registered for the real keys.
    if (contains(arrowKeys(), key)) return flags | EventFlag::secondaryFn | EventFlag::numericPad;
    if (contains(functionKeys(), key)) return flags | EventFlag::secondaryFn;
    if (contains(navigationKeys(), key)) return flags | EventFlag::secondaryFn;
    return flags;
}

bool KeyShortcut::isGlobal() const {
    if ((flags & globalModifiers) != 0) return true;
    return contains(functionKeys(), key);
}

std::uint32_t KeyShortcut::carbonModifiers() const {
    std::uint32_t result = 0;
    if ((flags & EventFlag::command) != 0) result += HotKeyModifier::command;
    if ((flags & EventFlag::shift) != 0) result += HotKeyModifier::shift;
    if ((flags & EventFlag::option) != 0) result += HotKeyModifier::option;
    if ((flags & EventFlag::control) != 0) result += HotKeyModifier::control;
    return result;
}

std::size_t hashOf(const KeyShortcut& shortcut) {
    std::size_t seed = std::hash<std::int64_t>{}(shortcut.key);
    hashCombine(seed, std::hash<EventFlags>{}(shortcut.flags));
    return seed;
}

}  // namespace ostrelle
