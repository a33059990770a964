#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace ostrelle {

// Prints JSON the way the bindings file is written: one member per line, two-space indentation,
// " : " between key and value, keys sorted, "/" escaped as "\/", and numbers as the shortest
// text that reads back to the same double (integral doubles without a fraction).
std::string writeBindingsStyleJSON(const nlohmann::json& value);

}  // namespace ostrelle
