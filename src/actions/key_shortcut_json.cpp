#include "actions/key_shortcut_json.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "support/json_read.h"

namespace ostrelle {
namespace {

// Virtual key codes of real keys all fit in seven bits; anything else in the file is damage.
constexpr std::int64_t maxStoredKeyCode = 127;

}  // namespace

nlohmann::json toJSON(const KeyShortcut& shortcut) {
    nlohmann::json names = nlohmann::json::array();
    for (const KeyModifier& modifier : KeyShortcut::modifiers()) {
        if ((shortcut.flags & modifier.flag) == modifier.flag) names.push_back(modifier.name);
    }
    return {{key_shortcut_keys::key, shortcut.key}, {key_shortcut_keys::modifiers, std::move(names)}};
}

KeyShortcut keyShortcutFromJSON(const nlohmann::json& value, const std::string& path) {
    using namespace json_read;
    requireObject(value, path);
    KeyShortcut shortcut;
    const std::string keyPath = member(path, key_shortcut_keys::key);
    shortcut.key = wholeNumber(required(value, key_shortcut_keys::key, path), keyPath);
    if (shortcut.key < 0 || shortcut.key > maxStoredKeyCode)
        throw JSONError(keyPath, "key code out of range");
    const std::string modifiersPath = member(path, key_shortcut_keys::modifiers);
    const nlohmann::json& names = required(value, key_shortcut_keys::modifiers, path);
    if (!names.is_array()) throw JSONError(modifiersPath, "expected an array of strings");
    const auto& table = KeyShortcut::modifiers();
    for (std::size_t i = 0; i < names.size(); ++i) {
        const std::string& text = string(names[i], element(modifiersPath, i));
        const auto found = std::find_if(table.begin(), table.end(),
                                        [&](const KeyModifier& modifier) { return modifier.name == text; });
        if (found == table.end()) throw JSONError(modifiersPath, "unknown modifier " + text);
        shortcut.flags |= found->flag;
    }
    return shortcut;
}

void to_json(nlohmann::json& value, const KeyShortcut& shortcut) {
    value = toJSON(shortcut);
}

void from_json(const nlohmann::json& value, KeyShortcut& shortcut) {
    shortcut = keyShortcutFromJSON(value);
}

}  // namespace ostrelle
