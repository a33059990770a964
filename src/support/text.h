#pragma once

#include <string>
#include <string_view>

namespace ostrelle {

// Trims spaces and tabs only: a line end the user typed is part of what they typed.
inline std::string trimSpacesAndTabs(std::string_view text) {
    const auto first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos) return "";
    const auto last = text.find_last_not_of(" \t");
    return std::string(text.substr(first, last - first + 1));
}

}  // namespace ostrelle
