#include "support/unicode_text.h"

#include <utf8proc.h>

#include <array>
#include <span>
#include <vector>

namespace ostrelle {
namespace {

constexpr char32_t replacementCharacter = 0xFFFD;

// The longest full case folding of one code point is three code points.
constexpr std::size_t maxFoldLength = 3;

// Lower case without diacritics: full case folding, then the marks of the canonical
// decomposition dropped and what is left composed again (so Hangul stays in syllables).
constexpr auto searchFoldOptions =
    static_cast<utf8proc_option_t>(UTF8PROC_CASEFOLD | UTF8PROC_STRIPMARK | UTF8PROC_COMPOSE);

const utf8proc_uint8_t* bytes(std::string_view text) {
    return reinterpret_cast<const utf8proc_uint8_t*>(text.data());
}

void appendUTF8(std::string& out, char32_t c) {
    std::array<utf8proc_uint8_t, 4> buffer{};
    // The encoder would write surrogates as they are and nothing at all past the last code point.
    const auto codePoint = static_cast<utf8proc_int32_t>(c);
    const auto value =
        utf8proc_codepoint_valid(codePoint) ? codePoint : utf8proc_int32_t{replacementCharacter};
    const auto length = utf8proc_encode_char(value, buffer.data());
    out.append(reinterpret_cast<const char*>(buffer.data()), static_cast<std::size_t>(length));
}

// Calls f with each code point of text; each byte that does not start a well-formed sequence
// reads as one U+FFFD, so "\xE2\x8C" gives two.
template <typename F>
void forEachCodePoint(std::string_view text, F&& f) {
    std::size_t i = 0;
    while (i < text.size()) {
        utf8proc_int32_t c = 0;
        const auto length =
            utf8proc_iterate(bytes(text.substr(i)), static_cast<utf8proc_ssize_t>(text.size() - i), &c);
        if (length > 0) {
            f(static_cast<char32_t>(c));
            i += static_cast<std::size_t>(length);
        } else {
            f(replacementCharacter);
            ++i;
        }
    }
}

// Decomposes text for searchFolded into buffer, which keeps one spare entry for the ending NUL
// utf8proc_reencode writes. One code point per byte nearly always suffices, so the buffer is
// sized once instead of in the counting pass utf8proc_map makes; it grows when it did not.
utf8proc_ssize_t decomposeForSearch(std::string_view text, std::vector<utf8proc_int32_t>& buffer) {
    const auto decompose = [&] {
        return utf8proc_decompose(bytes(text), static_cast<utf8proc_ssize_t>(text.size()), buffer.data(),
                                  static_cast<utf8proc_ssize_t>(buffer.size() - 1), searchFoldOptions);
    };
    buffer.resize(text.size() + 1);
    auto length = decompose();
    if (length >= 0 && static_cast<std::size_t>(length) >= buffer.size()) {
        buffer.resize(static_cast<std::size_t>(length) + 1);
        length = decompose();
    }
    return length;
}

// utf8proc has only the simple upper-case mappings, one code point each. The letters whose
// full upper case is longer ("ß" → "SS", "ŉ" → "ʼN", "ᾳ" → "ΑΙ") are exactly the lower- and
// title-case letters whose full case folding is longer, and their upper case is that folding
// upper-cased letter by letter.
void appendUppercased(std::string& out, char32_t c) {
    const auto codePoint = static_cast<utf8proc_int32_t>(c);
    if (utf8proc_category(codePoint) != UTF8PROC_CATEGORY_LU) {
        std::array<utf8proc_int32_t, maxFoldLength> folded{};
        int boundClass = UTF8PROC_BOUNDCLASS_START;
        const auto length =
            utf8proc_decompose_char(codePoint, folded.data(), static_cast<utf8proc_ssize_t>(folded.size()),
                                    UTF8PROC_CASEFOLD, &boundClass);
        if (length > 1 && static_cast<std::size_t>(length) <= folded.size()) {
            for (const utf8proc_int32_t letter : std::span(folded).first(static_cast<std::size_t>(length))) {
                appendUTF8(out, static_cast<char32_t>(utf8proc_toupper(letter)));
            }
            return;
        }
    }
    appendUTF8(out, static_cast<char32_t>(utf8proc_toupper(codePoint)));
}

// White space and line ends as the platform's trimming set has them: the space, line and
// paragraph separators, and of the control characters only tab to carriage return and next line.
bool isWhiteSpaceOrNewline(char32_t c) {
    switch (utf8proc_category(static_cast<utf8proc_int32_t>(c))) {
        case UTF8PROC_CATEGORY_ZS:
        case UTF8PROC_CATEGORY_ZL:
        case UTF8PROC_CATEGORY_ZP:
            return true;
        default:
            return (c >= 0x09 && c <= 0x0D) || c == 0x85;
    }
}

}  // namespace

std::u32string decodeUTF8(std::string_view text) {
    std::u32string result;
    result.reserve(text.size());
    forEachCodePoint(text, [&](char32_t c) { result += c; });
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
    forEachCodePoint(text, [&](char32_t c) { appendUppercased(result, c); });
    return result;
}

std::string searchFolded(std::string_view text) {
    std::vector<utf8proc_int32_t> buffer;
    auto length = decomposeForSearch(text, buffer);
    std::string repaired;
    if (length == UTF8PROC_ERROR_INVALIDUTF8) {
        // utf8proc refuses malformed text as a whole; fold it with the bad bytes replaced.
        repaired = encodeUTF8(decodeUTF8(text));
        text = repaired;
        length = decomposeForSearch(text, buffer);
    }
    if (length >= 0) length = utf8proc_reencode(buffer.data(), length, searchFoldOptions);
    // Well-formed text fails only when memory runs out; it is then compared as it is.
    if (length < 0) return std::string(text);
    return {reinterpret_cast<const char*>(buffer.data()), static_cast<std::size_t>(length)};
}

bool looselyContains(std::string_view text, std::string_view query) {
    // Whole code points on both sides, so a UTF-8 byte match is a code point match.
    return searchFolded(text).find(searchFolded(query)) != std::string::npos;
}

bool isBlank(std::string_view text) {
    bool blank = true;
    forEachCodePoint(text, [&](char32_t c) { blank = blank && isWhiteSpaceOrNewline(c); });
    return blank;
}

}  // namespace ostrelle
