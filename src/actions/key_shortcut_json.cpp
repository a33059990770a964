#include "actions/key_shortcut_json.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace ostrelle {
namespace {

constexpr auto keyKey = "key";
constexpr auto modifiersKey = "modifiers";
// Virtual key codes of real keys all fit in seven bits; anything else in the file is damage.
constexpr std::int64_t maxStoredKeyCode = 127;

}  // namespace

nlohmann::json toJSON(const KeyShortcut& shortcut) {
    nlohmann::json names = nlohmann::json::array();
    for (const KeyModifier& modifier : KeyShortcut::modifiers()) {
        if ((shortcut.flags & modifier.flag) == modifier.flag) names.push_back(modifier.name);
    }
    return {{keyKey, shortcut.key}, {modifiersKey, std::move(names)}};
}

KeyShortcut keyShortcutFromJSON(const nlohmann::json& value) {
    json_read::requireObject(value, "a key shortcut");
    KeyShortcut shortcut;
    shortcut.key = json_read::integer(value, keyKey);
    if (shortcut.key < 0 || shortcut.key > maxStoredKeyCode) {
        throw JsonDecodeError(JsonDecodeError::Kind::dataCorrupted, keyKey, "key code out of range");
    }
    const nlohmann::json& names = json_read::member(value, modifiersKey);
    if (!names.is_array()) {
        throw JsonDecodeError(JsonDecodeError::Kind::typeMismatch, modifiersKey,
                              "expected an array of strings");
    }
    const auto& table = KeyShortcut::modifiers();
    for (const nlohmann::json& name : names) {
        if (!name.is_string()) {
            throw JsonDecodeError(JsonDecodeError::Kind::typeMismatch, modifiersKey,
                                  "expected an array of strings");
        }
        const auto& text = name.get_ref<const std::string&>();
        const auto found = std::find_if(table.begin(), table.end(),
                                        [&](const KeyModifier& modifier) { return modifier.name == text; });
        if (found == table.end()) {
            throw JsonDecodeError(JsonDecodeError::Kind::dataCorrupted, modifiersKey,
                                  "unknown modifier " + text);
        }
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
