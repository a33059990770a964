#pragma once

#include <string>
#include <vector>

namespace ostrelle::cli {

// Every built-in gesture id, enabled or not, in catalog order.
std::vector<std::string> catalogGestureIDs();
// The built-in gesture ids that can be bound, in catalog order.
std::vector<std::string> enabledGestureIDs();
// Every action option as "appID/optionID", in catalog order.
std::vector<std::string> actionPaths();

}  // namespace ostrelle::cli
