// Actions that end in synthesized input: shortcuts with the per-application remaps, the
// switchers, spaces, media keys and the command-click, checked event by event.
#include <gtest/gtest.h>

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
constexpr EventFlags editorTabFlags = 0xB80000;  // ⌥⌘ with the bits of a real arrow key

// A press of `key` while `modifier` is held down as a key of its own.
std::vector<RecordedEvent> held(std::uint16_t modifier, EventFlags modifierFlag, std::uint16_t key,
                                EventFlags flags) {
    return {keyDown(modifier, modifierFlag), keyDown(key, flags), keyUp(key, flags), keyUp(modifier, 0)};
}

std::vector<RecordedEvent> media(std::int64_t downData, std::int64_t upData) {
    return {recorded::MediaKey{0xA00, downData}, recorded::MediaKey{0xB00, upData}};
}

struct KeysCase {
    const char* name;
    std::optional<std::string> frontmost;  // bundle id of the front app; nothing: no app in front
    ActionRef action;
    std::vector<RecordedEvent> expected;

    friend void PrintTo(const KeysCase& row, std::ostream* out) { *out << row.name; }
};

class ActionRunnerKeys : public ActionRunnerTest, public ::testing::WithParamInterface<KeysCase> {};

TEST_P(ActionRunnerKeys, PostsExactlyTheseEvents) {
    const KeysCase& row = GetParam();
    if (row.frontmost) system.setFrontmost(*row.frontmost);
    run(row.action);
    EXPECT_EQ(events(), row.expected);
    EXPECT_TRUE(errors().empty());
    EXPECT_EQ(queue.pendingCount(), 0u);
}

ActionRef custom(KeyShortcut shortcut) {
    return actionRef("keyboard", "custom", shortcut);
}

const std::string vsCode = "com.microsoft.VSCode";
const std::string firefox = "org.mozilla.firefox";
const std::string safari = "com.apple.Safari";
const std::optional<std::string> none;

INSTANTIATE_TEST_SUITE_P(
    Cases, ActionRunnerKeys,
    ::testing::Values(
        KeysCase{"tabRightInSafari", safari, actionRef("browsers", "right"), pressed(48, control)},
        KeysCase{"tabRightInVSCode", vsCode, actionRef("browsers", "right"), pressed(124, editorTabFlags)},
        // Shift only picks the direction; it is not sent.
        KeysCase{"tabLeftInVSCode", vsCode, actionRef("tabs", "left"), pressed(123, editorTabFlags)},
        KeysCase{"privateInFirefox", firefox, actionRef("browsers", "private"), pressed(35, command | shift)},
        // Keys are sent with the bits a typed one carries: fn and numeric pad on an arrow.
        KeysCase{"arrowGetsFnAndNumericPad", safari, actionRef("browsers", "top"), pressed(126, 0xB00000)},
        KeysCase{"plainKeyKeepsItsFlags", safari, actionRef("system", "lock"),
                 pressed(12, control | command)},
        // A shortcut the user recorded is sent as recorded: the remaps are for the catalog's own.
        KeysCase{"customControlTabInVSCode", vsCode, custom({48, control}), pressed(48, control)},
        KeysCase{"customArrowGetsEventFlags", none, custom({123, command}), pressed(123, 0xB00000)},
        KeysCase{"customHighestKeyCode", none, custom({65535, 0}), pressed(65535, 0)},
        KeysCase{"customWithoutShortcutBeeps", safari, actionRef("keyboard", "custom"), {beep}},
        // Command is held as a key of its own around the press; shift only ever travels as a flag.
        KeysCase{"appsRight", safari, actionRef("switcher", "right"), held(55, command, 48, command)},
        KeysCase{"appsLeft", safari, actionRef("switcher", "left"), held(55, command, 48, command | shift)},
        KeysCase{"windowsRight", none, actionRef("switcher", "windowright"), held(55, command, 50, command)},
        KeysCase{"spaceLeft", none, actionRef("system", "spaceleft"), held(59, control, 123, 0xA40000)},
        KeysCase{"spaceRight", none, actionRef("system", "spaceright"), held(59, control, 124, 0xA40000)},
        // The key sits in the upper half of the data, the state in the lower one.
        KeysCase{"volumeUp", none, actionRef("system", "volup"), media(0x00000A00, 0x00000B00)},
        KeysCase{"playPause", safari, actionRef("system", "playpause"), media(0x00100A00, 0x00100B00)}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(ActionRunnerTest, CommandClickPressesAndReleasesAtThePointerOrOnlyBeepsWithoutOne) {
    system.pointer = Point{412.5, 96.0};
    run("browsers", "linktab");
    const std::vector<RecordedEvent> expected{
        recorded::Mouse{MouseEventType::leftDown, {412.5, 96.0}, command},
        recorded::Mouse{MouseEventType::leftUp, {412.5, 96.0}, command}};
    EXPECT_EQ(events(), expected);
    system.clearRecorded();
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

    friend void PrintTo(const RemapCase& row, std::ostream* out) { *out << row.name; }
};

class ActionRunnerRemap : public ::testing::TestWithParam<RemapCase> {};

TEST_P(ActionRunnerRemap, SendsWhatTheFrontAppNeeds) {
    EXPECT_EQ(ActionRunner::remapped(GetParam().shortcut, GetParam().frontmost), GetParam().sent);
}

constexpr KeyShortcut controlTab{48, control};
constexpr KeyShortcut shiftCommandN{45, command | shift};

// The applications each remap is for, and the exact conditions, with shortcuts no catalog option
// sends today among them.
INSTANTIATE_TEST_SUITE_P(
    Conditions, ActionRunnerRemap,
    ::testing::Values(
        RemapCase{"vsCodeInsiders", "com.microsoft.VSCodeInsiders", controlTab, {124, editorTabFlags}},
        RemapCase{"vsCodium", "com.vscodium", controlTab, {124, editorTabFlags}},
        RemapCase{"cursor", "com.todesktop.230313mzl4w4u92", controlTab, {124, editorTabFlags}},
        RemapCase{"lookalikeIDIsNotVSCode", "com.microsoft.VSCode.helper", controlTab, controlTab},
        RemapCase{"controlOptionTabInVSCode", vsCode, {48, control | option}, {124, editorTabFlags}},
        RemapCase{"commandTabInVSCode", vsCode, {48, command}, {48, command}},
        RemapCase{"plainTabInVSCode", vsCode, {48, 0}, {48, 0}},
        RemapCase{"shiftCommandNInVSCode", vsCode, shiftCommandN, shiftCommandN},
        RemapCase{"firefoxDeveloperEdition",
                  "org.mozilla.firefoxdeveloperedition",
                  shiftCommandN,
                  {35, command | shift}},
        RemapCase{"firefoxNightly", "org.mozilla.nightly", shiftCommandN, {35, command | shift}},
        RemapCase{"optionShiftCommandNInFirefox",
                  firefox,
                  {45, command | shift | option},
                  {45, command | shift | option}},
        RemapCase{"commandNInFirefox", firefox, {45, command}, {45, command}},
        RemapCase{"shiftCommandNInSafari", "com.apple.Safari", shiftCommandN, shiftCommandN},
        RemapCase{"shiftCommandNWithNoAppID", std::nullopt, shiftCommandN, shiftCommandN},
        RemapCase{"controlTabInFirefox", firefox, controlTab, controlTab}),
    [](const auto& row) { return std::string(row.param.name); });

using ActionRunnerDeathTest = ActionRunnerTest;

TEST_F(ActionRunnerDeathTest, KeyCodeOutsideSixteenBitsIsAProgrammingError) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(run(custom({65536, 0})), "key code 65536");
    EXPECT_DEATH(run(custom({-1, command})), "key code -1");
}

}  // namespace
}  // namespace ostrelle
