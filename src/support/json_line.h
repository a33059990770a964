#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace ostrelle {

// One JSON value on one line, members in insertion order, with ": " after keys and ", " between
// items: {"t": 1.5, "touches": [[1, 0.5, 0.25]]}. Used for recordings and for the command line's
// output, which people read and diff. Strings are escaped and numbers printed as the shortest
// text that reads back to the same double, as nlohmann prints them.
std::string jsonLine(const nlohmann::ordered_json& value);

}  // namespace ostrelle
