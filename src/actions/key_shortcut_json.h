#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "actions/key_shortcut.h"
#include "support/json_error.h"

namespace ostrelle {

// Member names of the stored form, for writers that print it without building a tree.
namespace key_shortcut_keys {
inline constexpr const char* key = "key";
inline constexpr const char* modifiers = "modifiers";
}  // namespace key_shortcut_keys

// The stored form of a shortcut: {"key": 17, "modifiers": ["control", "command"]}. Only the four
// modifier keys are kept, written in their display order.
nlohmann::json toJSON(const KeyShortcut& shortcut);
// Throws JSONError naming the path below `path`, for example for a key code outside 0…127
// ("shortcut.key: key code out of range") or an unknown modifier name.
KeyShortcut keyShortcutFromJSON(const nlohmann::json& value, const std::string& path = "shortcut");

// The names nlohmann::json looks for, so that json.get<KeyShortcut>() works.
void to_json(nlohmann::json& value, const KeyShortcut& shortcut);
void from_json(const nlohmann::json& value, KeyShortcut& shortcut);

}  // namespace ostrelle
