#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace ostrelle {

// The string value of a key of a property list's top-level dictionary, read from its XML form;
// nothing when the text is not an XML property list (a binary one, say), the key is missing or
// its value is not a string.
std::optional<std::string> topLevelPlistString(std::string_view plist, std::string_view key);

}  // namespace ostrelle
