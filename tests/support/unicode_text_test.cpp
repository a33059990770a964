#include "support/unicode_text.h"

#include <gtest/gtest.h>

#include <ostream>

#include "support/natural_order.h"

namespace ostrelle {
namespace {

struct TextCase {
    const char* name;
    std::string input;
    std::string expected;
};

// Test names show the row name rather than the bytes of the row.
void PrintTo(const TextCase& row, std::ostream* out) {
    *out << row.name;
}

class SearchFolded : public ::testing::TestWithParam<TextCase> {};

TEST_P(SearchFolded, LowersAndDropsDiacritics) {
    EXPECT_EQ(searchFolded(GetParam().input), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, SearchFolded,
    ::testing::Values(TextCase{"ascii", "Zoom IN", "zoom in"}, TextCase{"precomposed", "Exposé", "expose"},
                      TextCase{"upperPrecomposed", "EXPOSÉ", "expose"},
                      TextCase{"combiningAccent", "Expose\u0301", "expose"},
                      TextCase{"latinExtendedA", "Łódź Ćma", "łodz cma"},
                      TextCase{"vietnamese", "Tiếng Việt", "tieng viet"},
                      TextCase{"sharpS", "Straße", "strasse"}, TextCase{"greek", "ΆΛΦΑ", "αλφα"},
                      TextCase{"cyrillic", "ЁЛКА й", "елка и"},
                      TextCase{"symbolsUntouched", "⌘⇧T → ⌃", "⌘⇧t → ⌃"}, TextCase{"empty", "", ""}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(Uppercased, UsesFullMappings) {
    EXPECT_EQ(uppercased("a"), "A");
    EXPECT_EQ(uppercased("é"), "É");
    EXPECT_EQ(uppercased("ß"), "SS");
    EXPECT_EQ(uppercased("ÿ"), "Ÿ");
    EXPECT_EQ(uppercased("я"), "Я");
    EXPECT_EQ(uppercased("ς"), "Σ");
    EXPECT_EQ(uppercased("1/ "), "1/ ");
}

TEST(UTF8, MalformedBytesReadAsReplacementCharacters) {
    // A lone continuation byte, a truncated sequence, an overlong slash and an encoded surrogate.
    EXPECT_EQ(decodeUTF8("a\x80"), (std::u32string{U'a', 0xFFFD}));
    EXPECT_EQ(decodeUTF8("\xE2\x8C"), (std::u32string{0xFFFD, 0xFFFD}));
    EXPECT_EQ(decodeUTF8("\xC0\xAF"), (std::u32string{0xFFFD, 0xFFFD}));
    EXPECT_EQ(decodeUTF8("\xED\xA0\x80"), (std::u32string{0xFFFD, 0xFFFD, 0xFFFD}));
    EXPECT_EQ(encodeUTF8(decodeUTF8("⌘ é 😀")), "⌘ é 😀");
}

TEST(LooselyContains, IgnoresCaseAndAccentsOnBothSides) {
    EXPECT_TRUE(looselyContains("App windows (App Exposé)", "EXPOSE"));
    EXPECT_TRUE(looselyContains("App windows (App Expose)", "exposé"));
    EXPECT_TRUE(looselyContains("anything", ""));
    EXPECT_FALSE(looselyContains("Zoom in", "zoomin"));
}

TEST(IsBlank, CountsEverySpaceSeparatorAndLineEnd) {
    EXPECT_TRUE(isBlank(""));
    EXPECT_TRUE(isBlank(" \t\r\n"));
    EXPECT_TRUE(isBlank("\u00A0"));  // no-break space
    EXPECT_TRUE(isBlank("\u3000"));  // ideographic space
    EXPECT_TRUE(isBlank("\u2028"));  // line separator
    EXPECT_FALSE(isBlank(" x "));
    EXPECT_FALSE(isBlank("\u200B"));  // zero-width space is a format character, not a space
}

struct OrderCase {
    const char* name;
    const char* lower;
    const char* higher;
};

// Test names show the row name rather than the bytes of the row.
void PrintTo(const OrderCase& row, std::ostream* out) {
    *out << row.name;
}

class NaturalOrder : public ::testing::TestWithParam<OrderCase> {};

TEST_P(NaturalOrder, SortsLowerFirst) {
    EXPECT_TRUE(std::is_lt(naturalCompare(GetParam().lower, GetParam().higher)));
    EXPECT_TRUE(std::is_gt(naturalCompare(GetParam().higher, GetParam().lower)));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, NaturalOrder,
    ::testing::Values(OrderCase{"numberByValue", "Tool 2", "Tool 10"},
                      OrderCase{"numberInside", "a9b", "a10a"}, OrderCase{"leadingZeros", "v007", "v10"},
                      OrderCase{"caseDoesNotWin", "apple", "Banana"},
                      OrderCase{"prefixFirst", "Mail", "Mailbox"},
                      OrderCase{"digitsBeforeLetters", "2Do", "Alpha"},
                      OrderCase{"accentNotAtEnd", "Émile", "Fax"},
                      OrderCase{"hugeNumbers", "x 99999999999999999999", "x 100000000000000000000"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(NaturalOrderEquality, CaseAccentsAndPaddingCompareEqual) {
    EXPECT_TRUE(std::is_eq(naturalCompare("safari", "SAFARI")));
    EXPECT_TRUE(std::is_eq(naturalCompare("Résumé", "Resume")));
    EXPECT_TRUE(std::is_eq(naturalCompare("App 01", "App 1")));
    EXPECT_TRUE(std::is_eq(naturalCompare("", "")));
    EXPECT_TRUE(std::is_lt(naturalCompare("", "a")));
}

}  // namespace
}  // namespace ostrelle
