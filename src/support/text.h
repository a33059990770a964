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

// ASCII letters lower-cased, everything else kept: for ids, key names and config words, not for
// text a person reads (the action search folds Unicode through utf8proc instead).
inline std::string asciiLowercased(std::string_view text) {
    std::string lower(text);
    for (char& c : lower) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return lower;
}

}  // namespace ostrelle
