#pragma once

#include <nlohmann/json_fwd.hpp>

#include "actions/json_decode_error.h"
#include "actions/key_shortcut.h"

namespace ostrelle {

// The stored form of a shortcut: {"key": 17, "modifiers": ["control", "command"]}. Only the four
// modifier keys are kept, written in their display order.
nlohmann::json toJSON(const KeyShortcut& shortcut);
// Throws JsonDecodeError, for example for a key code outside 0…127 or an unknown modifier name.
KeyShortcut keyShortcutFromJSON(const nlohmann::json& value);

// The names nlohmann::json looks for, so that json.get<KeyShortcut>() works.
void to_json(nlohmann::json& value, const KeyShortcut& shortcut);
void from_json(const nlohmann::json& value, KeyShortcut& shortcut);

}  // namespace ostrelle
