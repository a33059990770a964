#include "support/unicode_text.h"

#include <gtest/gtest.h>

namespace ostrelle {
namespace {

TEST(SearchFolded, LowersAndDropsMarks) {
    const std::pair<std::string, std::string> rows[] = {
        {"EXPOSÉ Exposé", "expose expose"},
        {"Expose\u0301", "expose"},  // precomposed and combining
        {"Łódź Ø", "łodz ø"},        // letters with no decomposition
        {"Straße", "strasse"},
        {"한글", "한글"},  // Hangul stays in syllables
        {"⌘⇧T → ⌃", "⌘⇧t → ⌃"},
        {"Expos\xC3 É", "expos\uFFFD e"},  // a malformed byte
    };
    for (const auto& [input, expected] : rows) EXPECT_EQ(searchFolded(input), expected) << input;
}

TEST(Uppercased, UsesFullMappings) {
    EXPECT_EQ(uppercased("a1/ é"), "A1/ É");
    EXPECT_EQ(uppercased("ß"), "SS");
    EXPECT_EQ(uppercased("ᾳ"), "ΑΙ");  // the iota subscript becomes a capital iota
    EXPECT_EQ(uppercased("İ"), "İ");   // already a capital, though it folds to two code points
    EXPECT_EQ(uppercased("a\x80"), "A\uFFFD");
}

TEST(UTF8, MalformedBytesReadAsReplacementCharacters) {
    // A lone continuation byte, a truncated sequence, an overlong slash and an encoded surrogate.
    EXPECT_EQ(decodeUTF8("a\x80"), (std::u32string{U'a', 0xFFFD}));
    EXPECT_EQ(decodeUTF8("\xE2\x8C"), (std::u32string{0xFFFD, 0xFFFD}));
    EXPECT_EQ(decodeUTF8("\xC0\xAF"), (std::u32string{0xFFFD, 0xFFFD}));
    EXPECT_EQ(decodeUTF8("\xED\xA0\x80"), (std::u32string{0xFFFD, 0xFFFD, 0xFFFD}));
    EXPECT_EQ(encodeUTF8(decodeUTF8("⌘ é 😀")), "⌘ é 😀");
    EXPECT_EQ(encodeUTF8(std::u32string{0xD800, 0x110000}), "\uFFFD\uFFFD");
}

TEST(LooselyContains, IgnoresCaseAndAccentsOnBothSides) {
    EXPECT_TRUE(looselyContains("App windows (App Exposé)", "EXPOSE"));
    EXPECT_TRUE(looselyContains("App windows (App Expose)", "exposé"));
    EXPECT_TRUE(looselyContains("anything", ""));
    EXPECT_FALSE(looselyContains("Zoom in", "zoomin"));
}

TEST(IsBlank, CountsEverySpaceSeparatorAndLineEnd) {
    EXPECT_TRUE(isBlank(""));
    EXPECT_TRUE(isBlank(" \t\r\n\v\f\u0085"));   // of the control characters, only these
    EXPECT_TRUE(isBlank("\u00A0\u3000\u2028"));  // no-break and ideographic space, line separator
    EXPECT_FALSE(isBlank(" x "));
    EXPECT_FALSE(isBlank("\x1C"));    // file separator: a control character, but no line end
    EXPECT_FALSE(isBlank("\u200B"));  // zero-width space is a format character, not a space
}

}  // namespace
}  // namespace ostrelle
