#pragma once

#include <nlohmann/json_fwd.hpp>

#include "actions/action_ref.h"
#include "actions/json_decode_error.h"

namespace ostrelle {

// The stored form of an action reference: "appID" and "optionID", plus "shortcut" (a key
// shortcut object) and "app" (a URL's absolute text) when present.
nlohmann::json toJSON(const ActionRef& ref);
// Throws JsonDecodeError when "appID" or "optionID" is missing or not a string. A damaged
// "shortcut" or "app" reads as absent, so one odd member does not cost the user the binding.
ActionRef actionRefFromJSON(const nlohmann::json& value);

void to_json(nlohmann::json& value, const ActionRef& ref);
void from_json(const nlohmann::json& value, ActionRef& ref);

}  // namespace ostrelle
