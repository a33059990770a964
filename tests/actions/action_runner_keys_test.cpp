// Actions that end in synthesized input: shortcuts with the per-application remaps, the
// switchers, spaces, media keys and the command-click, checked event by event.
#include <gtest/gtest.h>

#include <ostream>

#include "action_runner_fixture.h"

namespace ostrelle {
namespace {

using testing::actionRef;
using testing::ActionRunnerTest;
using testing::beep;
using testing::keyDown;
using testing::keyUp;
using testing::pressed;

constexpr EventFlags command = EventFlag::command;
constexpr EventFlags shift = EventFlag::shift;
constexpr EventFlags control = EventFlag::control;
constexpr EventFlags option = EventFlag::option;

struct KeysCase {
    const char* name;
    std::optional<std::string> frontmost;  // bundle id of the front app; nothing: no app in front
    ActionRef action;
    std::vector<RecordedEvent> expected;
};

void PrintTo(const KeysCase& row, std::ostream* out) {
    *out << row.name;
}

class ActionRunnerKeys : public ActionRunnerTest, public ::testing::WithParamInterface<KeysCase> {};

TEST_P(ActionRunnerKeys, PostsExactlyTheseEvents) {
    const KeysCase& row = GetParam();
    if (row.frontmost) system.setFrontmost(*row.frontmost);
    run(row.action);
    EXPECT_EQ(events(), row.expected);
    EXPECT_TRUE(errors().empty());
    EXPECT_EQ(queue.pendingCount(), 0u);
}

const std::string vsCode = "com.microsoft.VSCode";
const std::string firefox = "org.mozilla.firefox";
const std::string safari = "com.apple.Safari";

INSTANTIATE_TEST_SUITE_P(
    Shortcuts, ActionRunnerKeys,
    ::testing::Values(
        KeysCase{"tabRightInSafari", safari, actionRef("browsers", "right"), pressed(48, control)},
        KeysCase{"tabLeftInSafari", safari, actionRef("browsers", "left"), pressed(48, control | shift)},
        KeysCase{"tabRightWithNothingInFront", std::nullopt, actionRef("browsers", "right"),
                 pressed(48, control)},
        KeysCase{"tabRightInVSCode", vsCode, actionRef("browsers", "right"), pressed(124, 0xB80000)},
        // Shift only picks the direction; it is not sent.
        KeysCase{"tabLeftInVSCode", vsCode, actionRef("tabs", "left"), pressed(123, 0xB80000)},
        KeysCase{"tabRightInInsiders", "com.microsoft.VSCodeInsiders", actionRef("tabs", "right"),
                 pressed(124, 0xB80000)},
        KeysCase{"tabRightInVSCodium", "com.vscodium", actionRef("tabs", "right"), pressed(124, 0xB80000)},
        KeysCase{"tabLeftInCursor", "com.todesktop.230313mzl4w4u92", actionRef("tabs", "left"),
                 pressed(123, 0xB80000)},
        KeysCase{"newTabInVSCodeUnchanged", vsCode, actionRef("browsers", "newtab"), pressed(17, command)},
        KeysCase{"lookalikeIDIsNotVSCode", "com.microsoft.VSCode.helper", actionRef("browsers", "right"),
                 pressed(48, control)},
        KeysCase{"privateInFirefox", firefox, actionRef("browsers", "private"), pressed(35, command | shift)},
        KeysCase{"privateInDeveloperEdition", "org.mozilla.firefoxdeveloperedition",
                 actionRef("browsers", "private"), pressed(35, command | shift)},
        KeysCase{"privateInNightly", "org.mozilla.nightly", actionRef("browsers", "private"),
                 pressed(35, command | shift)},
        KeysCase{"privateInSafari", safari, actionRef("browsers", "private"), pressed(45, command | shift)},
        KeysCase{"newWindowInFirefoxUnchanged", firefox, actionRef("browsers", "newwindow"),
                 pressed(45, command)},
        // Arrow keys carry fn and numeric pad, F-keys and navigation keys fn, as typed ones do.
        KeysCase{"arrowGetsFnAndNumericPad", safari, actionRef("browsers", "top"), pressed(126, 0xB00000)},
        KeysCase{"functionKeyGetsFn", std::nullopt, actionRef("system", "desktop"), pressed(103, 0x800000)},
        KeysCase{"navigationKeyGetsFn", safari, actionRef("browsers", "pagedown"), pressed(121, 0x800000)},
        KeysCase{"plainKeyKeepsItsFlags", safari, actionRef("system", "lock"),
                 pressed(12, control | command)}),
    [](const auto& row) { return std::string(row.param.name); });

INSTANTIATE_TEST_SUITE_P(
    CustomShortcuts, ActionRunnerKeys,
    ::testing::Values(
        // A shortcut the user recorded is sent as recorded: the remaps are for the catalog's own.
        KeysCase{"customControlTabInVSCode", vsCode,
                 actionRef("keyboard", "custom", KeyShortcut{48, control}), pressed(48, control)},
        KeysCase{"customShiftCommandNInFirefox", firefox,
                 actionRef("keyboard", "custom", KeyShortcut{45, command | shift}),
                 pressed(45, command | shift)},
        KeysCase{"customArrowGetsEventFlags", std::nullopt,
                 actionRef("keyboard", "custom", KeyShortcut{123, command}), pressed(123, 0xB00000)},
        KeysCase{"customHighestKeyCode", std::nullopt, actionRef("keyboard", "custom", KeyShortcut{65535, 0}),
                 pressed(65535, 0)},
        KeysCase{"customWithoutShortcutBeeps", safari, actionRef("keyboard", "custom"), {beep}}),
    [](const auto& row) { return std::string(row.param.name); });

INSTANTIATE_TEST_SUITE_P(
    Switchers, ActionRunnerKeys,
    ::testing::Values(
        // Command is held as a key of its own around the press; shift only ever travels as a flag.
        KeysCase{"appsRight",
                 safari,
                 actionRef("switcher", "right"),
                 {keyDown(55, command), keyDown(48, command), keyUp(48, command), keyUp(55, 0)}},
        KeysCase{
            "appsLeft",
            safari,
            actionRef("switcher", "left"),
            {keyDown(55, command), keyDown(48, command | shift), keyUp(48, command | shift), keyUp(55, 0)}},
        KeysCase{"windowsRight",
                 std::nullopt,
                 actionRef("switcher", "windowright"),
                 {keyDown(55, command), keyDown(50, command), keyUp(50, command), keyUp(55, 0)}},
        KeysCase{
            "windowsLeft",
            std::nullopt,
            actionRef("switcher", "windowleft"),
            {keyDown(55, command), keyDown(50, command | shift), keyUp(50, command | shift), keyUp(55, 0)}},
        // Switching apps in the editor is not a tab switch.
        KeysCase{"appsRightInVSCode",
                 vsCode,
                 actionRef("switcher", "right"),
                 {keyDown(55, command), keyDown(48, command), keyUp(48, command), keyUp(55, 0)}},
        KeysCase{"spaceLeft",
                 std::nullopt,
                 actionRef("system", "spaceleft"),
                 {keyDown(59, control), keyDown(123, 0xA40000), keyUp(123, 0xA40000), keyUp(59, 0)}},
        KeysCase{"spaceRight",
                 std::nullopt,
                 actionRef("system", "spaceright"),
                 {keyDown(59, control), keyDown(124, 0xA40000), keyUp(124, 0xA40000), keyUp(59, 0)}}),
    [](const auto& row) { return std::string(row.param.name); });

RecordedEvent media(EventFlags flags, std::int64_t data1) {
    return recorded::MediaKey{flags, data1};
}

INSTANTIATE_TEST_SUITE_P(MediaKeys, ActionRunnerKeys,
                         ::testing::Values(KeysCase{"volumeUp",
                                                    std::nullopt,
                                                    actionRef("system", "volup"),
                                                    {media(0xA00, 0x00000A00), media(0xB00, 0x00000B00)}},
                                           KeysCase{"volumeDown",
                                                    std::nullopt,
                                                    actionRef("system", "voldown"),
                                                    {media(0xA00, 0x00010A00), media(0xB00, 0x00010B00)}},
                                           KeysCase{"mute",
                                                    std::nullopt,
                                                    actionRef("system", "mute"),
                                                    {media(0xA00, 0x00070A00), media(0xB00, 0x00070B00)}},
                                           KeysCase{"playPause",
                                                    safari,
                                                    actionRef("system", "playpause"),
                                                    {media(0xA00, 0x00100A00), media(0xB00, 0x00100B00)}},
                                           KeysCase{"previousTrack",
                                                    std::nullopt,
                                                    actionRef("system", "previous"),
                                                    {media(0xA00, 0x00120A00), media(0xB00, 0x00120B00)}}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(ActionRunnerTest, CommandClickPressesAndReleasesAtThePointer) {
    system.pointer = Point{412.5, 96.0};
    run("browsers", "linktab");
    const std::vector<RecordedEvent> expected{
        recorded::Mouse{MouseEventType::leftDown, {412.5, 96.0}, command},
        recorded::Mouse{MouseEventType::leftUp, {412.5, 96.0}, command}};
    EXPECT_EQ(events(), expected);
    EXPECT_TRUE(errors().empty());
}

TEST_F(ActionRunnerTest, CommandClickWithoutAPointerOnlyBeeps) {
    system.pointer.reset();
    run("browsers", "linktab");
    EXPECT_EQ(events(), std::vector<RecordedEvent>{beep});
    EXPECT_TRUE(errors().empty());
}

struct RemapCase {
    const char* name;
    std::optional<std::string> frontmost;
    KeyShortcut shortcut;
    KeyShortcut sent;
};

void PrintTo(const RemapCase& row, std::ostream* out) {
    *out << row.name;
}

class ActionRunnerRemap : public ::testing::TestWithParam<RemapCase> {};

TEST_P(ActionRunnerRemap, SendsWhatTheFrontAppNeeds) {
    EXPECT_EQ(ActionRunner::remapped(GetParam().shortcut, GetParam().frontmost), GetParam().sent);
}

// Shortcuts no catalog option sends today, so that the conditions themselves are pinned down.
INSTANTIATE_TEST_SUITE_P(
    Conditions, ActionRunnerRemap,
    ::testing::Values(
        RemapCase{"optionShiftCommandNInFirefox",
                  firefox,
                  {45, command | shift | option},
                  {45, command | shift | option}},
        RemapCase{"commandNInFirefox", firefox, {45, command}, {45, command}},
        RemapCase{"shiftCommandNInFirefox", firefox, {45, command | shift}, {35, command | shift}},
        RemapCase{"shiftCommandNWithNoAppID", std::nullopt, {45, command | shift}, {45, command | shift}},
        RemapCase{"controlOptionTabInVSCode", vsCode, {48, control | option}, {124, 0xB80000}},
        RemapCase{"commandTabInVSCode", vsCode, {48, command}, {48, command}},
        RemapCase{"plainTabInVSCode", vsCode, {48, 0}, {48, 0}},
        RemapCase{"controlTabInFirefox", firefox, {48, control}, {48, control}},
        RemapCase{"shiftCommandNInVSCode", vsCode, {45, command | shift}, {45, command | shift}}),
    [](const auto& row) { return std::string(row.param.name); });

using ActionRunnerDeathTest = ActionRunnerTest;

TEST_F(ActionRunnerDeathTest, KeyCodeOutsideSixteenBitsIsAProgrammingError) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(run(actionRef("keyboard", "custom", KeyShortcut{65536, 0})), "key code 65536");
    EXPECT_DEATH(run(actionRef("keyboard", "custom", KeyShortcut{-1, command})), "key code -1");
}

}  // namespace
}  // namespace ostrelle
