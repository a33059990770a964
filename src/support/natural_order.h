#pragma once

#include <compare>
#include <string_view>

namespace ostrelle {

// The order a file browser lists names in: case and accents ignored, and runs of digits
// compared by their value, so "Tool 2" comes before "Tool 10".
std::weak_ordering naturalCompare(std::string_view a, std::string_view b);

}  // namespace ostrelle
