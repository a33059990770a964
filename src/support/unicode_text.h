#pragma once

#include <string>
#include <string_view>

namespace ostrelle {

// Unicode helpers for the texts shown and searched (names, labels, key characters), over
// utf8proc's character data.

// The code points of UTF-8 text; a malformed byte reads as U+FFFD.
std::u32string decodeUTF8(std::string_view text);
std::string encodeUTF8(std::u32string_view codePoints);

// Upper case with the full mappings ("ß" → "SS").
std::string uppercased(std::string_view text);

// Text reduced for loose comparison: lower case (full case folding) and every combining mark
// removed, so "Exposé", "EXPOSE" and "Expose" with a combining accent all read "expose". Letters
// that are not a base letter plus a mark keep their own shape: "Ø" reads "ø", "Ł" reads "ł".
std::string searchFolded(std::string_view text);

// Whether text holds the query once both are folded; an empty query is contained everywhere.
bool looselyContains(std::string_view text, std::string_view query);

// Whether text holds nothing but white space and line ends (any Unicode space separator).
bool isBlank(std::string_view text);

}  // namespace ostrelle
