#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "actions/action_ref.h"
#include "support/json_error.h"

namespace ostrelle {

// Member names of the stored form, for writers that print it without building a tree.
namespace action_ref_keys {
inline constexpr const char* appID = "appID";
inline constexpr const char* optionID = "optionID";
inline constexpr const char* shortcut = "shortcut";
inline constexpr const char* app = "app";
}  // namespace action_ref_keys

// The stored form of an action reference: "appID" and "optionID", plus "shortcut" (a key
// shortcut object) and "app" (a URL's absolute text) when present.
nlohmann::json toJSON(const ActionRef& ref);
// Throws JSONError when "appID" or "optionID" is missing or not a string. A damaged
// "shortcut" or "app" reads as absent, so one odd member does not cost the user the binding.
ActionRef actionRefFromJSON(const nlohmann::json& value, const std::string& path = "action");

void to_json(nlohmann::json& value, const ActionRef& ref);
void from_json(const nlohmann::json& value, ActionRef& ref);

}  // namespace ostrelle
