#pragma once

#include <nlohmann/json.hpp>

#include "store/gesture_binding.h"

namespace ostrelle::cli {

// A binding as `bindings` and `bind` print it:
// {"fingers": 3, "gesture": "3.tap", "name": "Three-finger tap", "action": "browsers/newtab",
//  "summary": "Open new tab", "id": "<uuid>"}.
nlohmann::ordered_json bindingLine(const GestureBinding& binding);

// "browsers/newtab": how the command line names an action option.
std::string actionPath(const ActionRef& action);

}  // namespace ostrelle::cli
