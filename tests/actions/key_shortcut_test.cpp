#include "actions/key_shortcut.h"

#include <gtest/gtest.h>

#include <memory>
#include <ostream>
#include <set>

#include "action_fakes.h"

namespace ostrelle {
namespace {

using testing::FakeKeyboardLayout;

constexpr EventFlags shift = EventFlag::shift;
constexpr EventFlags control = EventFlag::control;
constexpr EventFlags option = EventFlag::option;
constexpr EventFlags command = EventFlag::command;
constexpr EventFlags all = control | option | shift | command;

TEST(KeyShortcutTables, ModifiersKeepDisplayOrder) {
    const auto& modifiers = KeyShortcut::modifiers();
    ASSERT_EQ(modifiers.size(), 4u);
    EXPECT_EQ(modifiers[0].name, "control");
    EXPECT_EQ(modifiers[0].glyph, "⌃");
    EXPECT_EQ(modifiers[1].name, "option");
    EXPECT_EQ(modifiers[1].glyph, "⌥");
    EXPECT_EQ(modifiers[2].name, "shift");
    EXPECT_EQ(modifiers[2].glyph, "⇧");
    EXPECT_EQ(modifiers[3].name, "command");
    EXPECT_EQ(modifiers[3].glyph, "⌘");
    EXPECT_EQ(KeyShortcut::recordable, shift | control | option | command);
}

TEST(KeyShortcutTables, SizesAndEdgeEntries) {
    EXPECT_EQ(KeyShortcut::functionKeys().size(), 20u);
    EXPECT_EQ(KeyShortcut::arrowKeys().size(), 4u);
    EXPECT_EQ(KeyShortcut::navigationKeys().size(), 5u);
    EXPECT_EQ(KeyShortcut::otherKeys().size(), 6u);
    EXPECT_EQ(KeyShortcut::functionKeys().at(122), "F1");
    EXPECT_EQ(KeyShortcut::functionKeys().at(111), "F12");
    EXPECT_EQ(KeyShortcut::functionKeys().at(105), "F13");
    EXPECT_EQ(KeyShortcut::functionKeys().at(64), "F17");
    EXPECT_EQ(KeyShortcut::functionKeys().at(90), "F20");
    EXPECT_EQ(KeyShortcut::arrowKeys().at(126), "↑");
    EXPECT_EQ(KeyShortcut::arrowKeys().at(125), "↓");
    EXPECT_EQ(KeyShortcut::navigationKeys().at(115), "↖");
    EXPECT_EQ(KeyShortcut::navigationKeys().at(117), "⌦");
    EXPECT_EQ(KeyShortcut::otherKeys().at(76), "⌤");
    EXPECT_EQ(KeyShortcut::otherKeys().at(51), "⌫");
}

TEST(KeyShortcutTables, NoKeyIsInTwoTables) {
    std::set<std::int64_t> seen;
    for (const auto* table : {&KeyShortcut::functionKeys(), &KeyShortcut::arrowKeys(),
                              &KeyShortcut::navigationKeys(), &KeyShortcut::otherKeys()}) {
        for (const auto& [key, name] : *table) EXPECT_TRUE(seen.insert(key).second) << name;
    }
}

struct ShortcutCase {
    const char* name;
    KeyShortcut shortcut;
    std::string display;
    EventFlags eventFlags;
    bool isGlobal;
    std::uint32_t carbon;
};

// Test names show the row name rather than the bytes of the row.
void PrintTo(const ShortcutCase& row, std::ostream* out) {
    *out << row.name;
}

class KeyShortcutBehaviour : public ::testing::TestWithParam<ShortcutCase> {};

TEST_P(KeyShortcutBehaviour, DisplayFlagsAndHotKeyUse) {
    const ShortcutCase& c = GetParam();
    EXPECT_EQ(c.shortcut.display(nullptr), c.display);
    EXPECT_EQ(c.shortcut.eventFlags(), c.eventFlags);
    EXPECT_EQ(c.shortcut.isGlobal(), c.isGlobal);
    EXPECT_EQ(c.shortcut.carbonModifiers(), c.carbon);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, KeyShortcutBehaviour,
    ::testing::Values(
        ShortcutCase{"f1Alone", {122, 0}, "F1", 0x800000, true, 0},
        ShortcutCase{"f20Alone", {90, 0}, "F20", 0x800000, true, 0},
        ShortcutCase{"shiftF5", {96, shift}, "⇧F5", 0x820000, true, 0x200},
        ShortcutCase{"shiftA", {0, shift}, "⇧Key 0", shift, false, 0x200},
        ShortcutCase{"spaceAlone", {49, 0}, "Space", 0, false, 0},
        ShortcutCase{"commandLeft", {123, command}, "⌘←", 0xB00000, true, 0x100},
        ShortcutCase{"controlRight", {124, control}, "⌃→", 0xA40000, true, 0x1000},
        ShortcutCase{"optionPageDown", {121, option}, "⌥⇟", 0x880000, true, 0x800},
        ShortcutCase{"homeAlone", {115, 0}, "↖", 0x800000, false, 0},
        ShortcutCase{"controlReturn", {36, control}, "⌃↩", control, true, 0x1000},
        ShortcutCase{"optionSpace", {49, option}, "⌥Space", option, true, 0x800},
        ShortcutCase{"escape", {53, 0}, "Esc", 0, false, 0},
        ShortcutCase{"allFour", {48, all}, "⌃⌥⇧⌘⇥", all, true, 0x1B00},
        // Bits other than the four modifiers show no glyph and register nothing, but travel along.
        ShortcutCase{
            "strayBits", {48, command | EventFlag::numericPad | 0x1}, "⌘⇥", command | 0x200001, true, 0x100}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(KeyShortcutGlyphs, FollowTheFixedOrderWhateverTheBitsAre) {
    EXPECT_EQ((KeyShortcut{0, command | shift | control}).glyphs(), "⌃⇧⌘");
    EXPECT_EQ((KeyShortcut{0, shift}).glyphs(), "⇧");
    EXPECT_EQ((KeyShortcut{0, 0}).glyphs(), "");
    EXPECT_EQ((KeyShortcut{0, EventFlag::secondaryFn}).glyphs(), "");
}

TEST(KeyShortcutValue, EqualityAndHashCoverBothFields) {
    const KeyShortcut a{17, command};
    EXPECT_EQ(a, (KeyShortcut{17, command}));
    EXPECT_NE(a, (KeyShortcut{17, command | shift}));
    EXPECT_NE(a, (KeyShortcut{16, command}));
    EXPECT_EQ(std::hash<KeyShortcut>{}(a), std::hash<KeyShortcut>{}(KeyShortcut{17, command}));
}

TEST(KeyShortcutLayout, WithoutLayoutUnnamedKeysReadKeyN) {
    EXPECT_EQ((KeyShortcut{110, 0}).keyName(nullptr), "Key 110");
    EXPECT_EQ((KeyShortcut{40, command | shift}).display(nullptr), "⇧⌘Key 40");
    // With no layout to ask, an impossible key code is merely shown.
    EXPECT_EQ((KeyShortcut{-1, 0}).keyName(nullptr), "Key -1");
}

TEST(KeyShortcutLayout, LayoutNamesAreUpperCased) {
    auto layout = std::make_shared<FakeKeyboardLayout>(
        std::map<std::uint16_t, std::string>{{0, "a"}, {40, "k"}, {41, "ö"}, {27, "ß"}, {42, " x "}});
    EXPECT_EQ((KeyShortcut{0, command}).display(layout.get()), "⌘A");
    EXPECT_EQ((KeyShortcut{40, command | shift}).display(layout.get()), "⇧⌘K");
    EXPECT_EQ((KeyShortcut{41, 0}).keyName(layout.get()), "Ö");
    EXPECT_EQ((KeyShortcut{27, 0}).keyName(layout.get()), "SS");
    // Trimming only decides blankness; the name keeps its spaces.
    EXPECT_EQ((KeyShortcut{42, 0}).keyName(layout.get()), " X ");
}

TEST(KeyShortcutLayout, BlankOrMissingTranslationsFallBack) {
    auto layout = std::make_shared<FakeKeyboardLayout>(
        std::map<std::uint16_t, std::string>{{10, " "}, {11, "\u00A0"}, {12, ""}, {13, "\t\n"}});
    EXPECT_EQ((KeyShortcut{10, 0}).keyName(layout.get()), "Key 10");
    EXPECT_EQ((KeyShortcut{11, 0}).keyName(layout.get()), "Key 11");
    EXPECT_EQ((KeyShortcut{12, 0}).keyName(layout.get()), "Key 12");
    EXPECT_EQ((KeyShortcut{13, 0}).keyName(layout.get()), "Key 13");
    EXPECT_EQ((KeyShortcut{14, 0}).keyName(layout.get()), "Key 14");  // the layout has nothing for it
}

TEST(KeyShortcutLayout, FixedTablesWinAndAreNeverAsked) {
    auto layout = std::make_shared<FakeKeyboardLayout>(
        std::map<std::uint16_t, std::string>{{49, " "}, {53, "\x1B"}, {122, "x"}, {123, "y"}});
    EXPECT_EQ((KeyShortcut{49, 0}).keyName(layout.get()), "Space");
    EXPECT_EQ((KeyShortcut{53, 0}).keyName(layout.get()), "Esc");
    EXPECT_EQ((KeyShortcut{122, 0}).keyName(layout.get()), "F1");
    EXPECT_EQ((KeyShortcut{123, 0}).keyName(layout.get()), "←");
    EXPECT_TRUE(layout->asked.empty());
}

TEST(KeyShortcutLayoutDeathTest, KeyCodeBeyondSixteenBitsIsAProgrammingError) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    auto layout = std::make_shared<FakeKeyboardLayout>(std::map<std::uint16_t, std::string>{});
    EXPECT_DEATH((void)(KeyShortcut{65536, 0}).keyName(layout.get()), "key code");
    EXPECT_DEATH((void)(KeyShortcut{-1, 0}).keyName(layout.get()), "key code");
    EXPECT_EQ((KeyShortcut{65535, 0}).keyName(layout.get()), "Key 65535");
}

}  // namespace
}  // namespace ostrelle
