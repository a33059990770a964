#include "actions/key_shortcut.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "action_fakes.h"

namespace ostrelle {
namespace {

constexpr EventFlags shift = EventFlag::shift;
constexpr EventFlags control = EventFlag::control;
constexpr EventFlags option = EventFlag::option;
constexpr EventFlags command = EventFlag::command;
constexpr EventFlags all = control | option | shift | command;

TEST(KeyShortcut, DisplayFlagsAndHotKeyUse) {
    const struct {
        const char* name;
        KeyShortcut shortcut;
        std::string display;
        EventFlags eventFlags;
        bool isGlobal;
        std::uint32_t carbon;
    } rows[] = {
        {"f1Alone", {122, 0}, "F1", 0x800000, true, 0},
        {"shiftF5", {96, shift}, "⇧F5", 0x820000, true, 0x200},
        {"shiftA", {0, shift}, "⇧Key 0", shift, false, 0x200},
        {"spaceAlone", {49, 0}, "Space", 0, false, 0},
        {"commandLeft", {123, command}, "⌘←", 0xB00000, true, 0x100},
        {"controlRight", {124, control}, "⌃→", 0xA40000, true, 0x1000},
        {"optionPageDown", {121, option}, "⌥⇟", 0x880000, true, 0x800},
        {"homeAlone", {115, 0}, "↖", 0x800000, false, 0},
        {"controlReturn", {36, control}, "⌃↩", control, true, 0x1000},
        {"optionSpace", {49, option}, "⌥Space", option, true, 0x800},
        {"escape", {53, 0}, "Esc", 0, false, 0},
        {"allFour", {48, all}, "⌃⌥⇧⌘⇥", all, true, 0x1B00},
        // Bits other than the four modifiers show no glyph and register nothing, but travel along.
        {"strayBits", {48, command | EventFlag::numericPad | 0x1}, "⌘⇥", command | 0x200001, true, 0x100},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(row.shortcut.display(nullptr), row.display);
        EXPECT_EQ(row.shortcut.eventFlags(), row.eventFlags);
        EXPECT_EQ(row.shortcut.isGlobal(), row.isGlobal);
        EXPECT_EQ(row.shortcut.carbonModifiers(), row.carbon);
    }
}

TEST(KeyShortcutLayout, NamesComeFromTheFixedTablesThenTheLayoutUpperCasedThenTheKeyCode) {
    const std::map<std::uint16_t, std::string> names{{40, "k"}, {41, "ö"}, {27, "ß"},  {42, " x "},
                                                     {10, " "}, {49, " "}, {122, "x"}, {123, "y"}};
    testing::FakeKeyboardLayout layout(names);
    const struct {
        const char* name;
        KeyShortcut shortcut;
        const KeyboardLayout* layout;
        const char* display;
    } rows[] = {
        {"withoutLayout", {110, 0}, nullptr, "Key 110"},
        {"impossibleCodeWithoutLayoutIsShown", {-1, 0}, nullptr, "Key -1"},
        {"letterWithGlyphs", {40, command | shift}, &layout, "⇧⌘K"},
        {"umlaut", {41, 0}, &layout, "Ö"},
        {"sharpS", {27, 0}, &layout, "SS"},
        {"spacesAreKept", {42, 0}, &layout, " X "},  // trimming only decides blankness
        {"blank", {10, 0}, &layout, "Key 10"},
        {"unknownToTheLayout", {14, 0}, &layout, "Key 14"},
        {"highestCode", {65535, 0}, &layout, "Key 65535"},
        {"spaceFromTheTable", {49, 0}, &layout, "Space"},
        {"functionKeyFromTheTable", {122, 0}, &layout, "F1"},
        {"arrowFromTheTable", {123, 0}, &layout, "←"},
    };
    for (const auto& row : rows) EXPECT_EQ(row.shortcut.display(row.layout), row.display) << row.name;
    for (const int fixed : {49, 122, 123})
        EXPECT_EQ(std::count(layout.asked.begin(), layout.asked.end(), fixed), 0) << "asked for " << fixed;
}

TEST(KeyShortcutLayoutDeathTest, KeyCodeBeyondSixteenBitsIsAProgrammingError) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    testing::FakeKeyboardLayout layout({});
    EXPECT_DEATH((void)(KeyShortcut{65536, 0}).keyName(&layout), "key code");
    EXPECT_DEATH((void)(KeyShortcut{-1, 0}).keyName(&layout), "key code");
}

}  // namespace
}  // namespace ostrelle
