#pragma once

#include <span>
#include <string_view>

namespace ostrelle::unicode {

// One code point and the text it maps to, as UTF-8. Tables are sorted by code point.
struct Mapping {
    char32_t codePoint;
    std::string_view text;
};

// Lower case and no diacritics, for the non-ASCII letters covered (ASCII is done in code).
std::span<const Mapping> foldMappings();
// Full upper-case mappings for the non-ASCII letters covered.
std::span<const Mapping> upperMappings();

}  // namespace ostrelle::unicode
