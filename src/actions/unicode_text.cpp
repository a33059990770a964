#include "actions/unicode_text.h"

#include <algorithm>
#include <span>

#include "actions/unicode_tables.h"

namespace ostrelle {
namespace {

constexpr char32_t replacementCharacter = 0xFFFD;
constexpr char32_t maxCodePoint = 0x10FFFF;

const unicode::Mapping* findMapping(std::span<const unicode::Mapping> table, char32_t c) {
    const auto it =
        std::lower_bound(table.begin(), table.end(), c,
                         [](const unicode::Mapping& m, char32_t value) { return m.codePoint < value; });
    return it != table.end() && it->codePoint == c ? &*it : nullptr;
}

// Combining marks: the diacritics of decomposed text, which loose comparison ignores.
bool isCombiningMark(char32_t c) {
    return (c >= 0x0300 && c <= 0x036F) || (c >= 0x1AB0 && c <= 0x1AFF) || (c >= 0x1DC0 && c <= 0x1DFF) ||
           (c >= 0x20D0 && c <= 0x20FF) || (c >= 0xFE20 && c <= 0xFE2F);
}

// White space and line ends as the platform's trimming set has them (tab to carriage return,
// next line, and every space separator).
bool isWhiteSpaceOrNewline(char32_t c) {
    return (c >= 0x09 && c <= 0x0D) || c == 0x20 || c == 0x85 || c == 0xA0 || c == 0x1680 ||
           (c >= 0x2000 && c <= 0x200A) || c == 0x2028 || c == 0x2029 || c == 0x202F || c == 0x205F ||
           c == 0x3000;
}

void appendUTF8(std::string& out, char32_t c) {
    const auto byte = [](char32_t v) { return static_cast<char>(static_cast<unsigned char>(v)); };
    if (c > maxCodePoint || (c >= 0xD800 && c <= 0xDFFF)) c = replacementCharacter;
    if (c < 0x80) {
        out += byte(c);
    } else if (c < 0x800) {
        out += byte(0xC0 | (c >> 6));
        out += byte(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        out += byte(0xE0 | (c >> 12));
        out += byte(0x80 | ((c >> 6) & 0x3F));
        out += byte(0x80 | (c & 0x3F));
    } else {
        out += byte(0xF0 | (c >> 18));
        out += byte(0x80 | ((c >> 12) & 0x3F));
        out += byte(0x80 | ((c >> 6) & 0x3F));
        out += byte(0x80 | (c & 0x3F));
    }
}

}  // namespace

std::u32string decodeUTF8(std::string_view text) {
    std::u32string result;
    result.reserve(text.size());
    std::size_t i = 0;
    while (i < text.size()) {
        const auto lead = static_cast<unsigned char>(text[i]);
        std::size_t length = 0;
        char32_t value = 0;
        char32_t minimum = 0;
        if (lead < 0x80) {
            length = 1;
            value = lead;
        } else if ((lead & 0xE0) == 0xC0) {
            length = 2;
            value = lead & 0x1Fu;
            minimum = 0x80;
        } else if ((lead & 0xF0) == 0xE0) {
            length = 3;
            value = lead & 0x0Fu;
            minimum = 0x800;
        } else if ((lead & 0xF8) == 0xF0) {
            length = 4;
            value = lead & 0x07u;
            minimum = 0x10000;
        }
        bool valid = length > 0 && i + length <= text.size();
        for (std::size_t k = 1; valid && k < length; ++k) {
            const auto next = static_cast<unsigned char>(text[i + k]);
            if ((next & 0xC0) != 0x80) valid = false;
            value = (value << 6) | (next & 0x3Fu);
        }
        // Overlong forms, surrogates and values past the last code point are malformed too.
        if (valid && (value < minimum || value > maxCodePoint || (value >= 0xD800 && value <= 0xDFFF))) {
            valid = false;
        }
        if (valid) {
            result += value;
            i += length;
        } else {
            result += replacementCharacter;
            ++i;
        }
    }
    return result;
}

std::string encodeUTF8(std::u32string_view codePoints) {
    std::string result;
    result.reserve(codePoints.size());
    for (char32_t c : codePoints) appendUTF8(result, c);
    return result;
}

std::string uppercased(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (char32_t c : decodeUTF8(text)) {
        if (c >= 'a' && c <= 'z') {
            appendUTF8(result, c - ('a' - 'A'));
        } else if (const auto* mapping = findMapping(unicode::upperMappings(), c)) {
            result += mapping->text;
        } else {
            appendUTF8(result, c);
        }
    }
    return result;
}

std::string searchFolded(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (char32_t c : decodeUTF8(text)) {
        if (c >= 'A' && c <= 'Z') {
            appendUTF8(result, c + ('a' - 'A'));
        } else if (isCombiningMark(c)) {
            continue;
        } else if (const auto* mapping = findMapping(unicode::foldMappings(), c)) {
            result += mapping->text;
        } else {
            appendUTF8(result, c);
        }
    }
    return result;
}

bool looselyContains(std::string_view text, std::string_view query) {
    // Whole code points on both sides, so a UTF-8 byte match is a code point match.
    return searchFolded(text).find(searchFolded(query)) != std::string::npos;
}

bool isBlank(std::string_view text) {
    const std::u32string codePoints = decodeUTF8(text);
    return std::all_of(codePoints.begin(), codePoints.end(), isWhiteSpaceOrNewline);
}

}  // namespace ostrelle
