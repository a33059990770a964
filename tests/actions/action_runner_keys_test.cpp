// Actions that end in synthesized input: shortcuts with the per-application remaps, the
// switchers, spaces, media keys and the command-click, checked event by event.
#include <gtest/gtest.h>

#include "action_runner_fixture.h"

namespace ostrelle::testing {
namespace {

constexpr EventFlags command = EventFlag::command;
constexpr EventFlags shift = EventFlag::shift;
constexpr EventFlags control = EventFlag::control;
constexpr EventFlags option = EventFlag::option;
constexpr EventFlags editorTabFlags = 0xB80000;  // ⌥⌘ with the bits of a real arrow key

// A press of `key` while `modifier` is held down as a key of its own.
std::vector<RecordedEvent> held(std::uint16_t modifier, EventFlags modifierFlag, std::uint16_t key,
                                EventFlags flags) {
    return {recorded::Key{modifier, true, modifierFlag}, recorded::Key{key, true, flags},
            recorded::Key{key, false, flags}, recorded::Key{modifier, false, 0}};
}

ActionRef custom(KeyShortcut shortcut) {
    return actionRef("keyboard", "custom", shortcut);
}

const std::string vsCode = "com.microsoft.VSCode";
const std::string firefox = "org.mozilla.firefox";
const std::string safari = "com.apple.Safari";
const std::optional<std::string> none;

TEST_F(ActionRunnerTest, PostsExactlyTheseEvents) {
    const struct {
        const char* name;
        std::optional<std::string> frontmost;  // bundle id of the front app; nothing: no app in front
        ActionRef action;
        std::vector<RecordedEvent> expected;
    } rows[] = {
        {"tabRightInSafari", safari, actionRef("browsers", "right"), pressed(48, control)},
        {"tabRightInVSCode", vsCode, actionRef("browsers", "right"), pressed(124, editorTabFlags)},
        // Shift only picks the direction; it is not sent.
        {"tabLeftInVSCode", vsCode, actionRef("tabs", "left"), pressed(123, editorTabFlags)},
        // Keys are sent with the bits a typed one carries: fn and numeric pad on an arrow.
        {"arrowGetsFnAndNumericPad", safari, actionRef("browsers", "top"), pressed(126, 0xB00000)},
        {"plainKeyKeepsItsFlags", safari, actionRef("system", "lock"), pressed(12, control | command)},
        // A shortcut the user recorded is sent as recorded: the remaps are for the catalog's own.
        {"customControlTabInVSCode", vsCode, custom({48, control}), pressed(48, control)},
        {"customArrowGetsEventFlags", none, custom({123, command}), pressed(123, 0xB00000)},
        {"customHighestKeyCode", none, custom({65535, 0}), pressed(65535, 0)},
        {"customWithoutShortcutBeeps", safari, actionRef("keyboard", "custom"), {beep}},
        // Command is held as a key of its own around the press; shift only ever travels as a flag.
        {"appsRight", safari, actionRef("switcher", "right"), held(55, command, 48, command)},
        {"appsLeft", safari, actionRef("switcher", "left"), held(55, command, 48, command | shift)},
        {"spaceLeft", none, actionRef("system", "spaceleft"), held(59, control, 123, 0xA40000)},
        // The key sits in the upper half of the data, the state in the lower one.
        {"commandClickAtThePointer",
         none,
         actionRef("browsers", "linktab"),
         {recorded::Mouse{MouseEventType::leftDown, {412.5, 96.0}, command},
          recorded::Mouse{MouseEventType::leftUp, {412.5, 96.0}, command}}},
        {"playPause",
         safari,
         actionRef("system", "playpause"),
         {recorded::MediaKey{0xA00, 0x00100A00}, recorded::MediaKey{0xB00, 0x00100B00}}},
    };
    system.pointer = Point{412.5, 96.0};
    for (const auto& row : rows) {
        system.clearRecorded();
        system.frontmost.reset();
        if (row.frontmost) system.setFrontmost(*row.frontmost);
        run(row.action);
        EXPECT_EQ(events(), row.expected) << row.name;
        EXPECT_EQ(queue.pendingCount(), 0u) << row.name;
    }
    EXPECT_TRUE(errors().empty());
}

TEST_F(ActionRunnerTest, CommandClickWithoutAPointerOnlyBeeps) {
    system.pointer.reset();
    run("browsers", "linktab");
    EXPECT_EQ(events(), std::vector<RecordedEvent>{beep});
    EXPECT_TRUE(errors().empty());
}

constexpr KeyShortcut controlTab{48, control};
constexpr KeyShortcut shiftCommandN{45, command | shift};

// The exact conditions of each remap, with shortcuts no catalog option sends today among them.
TEST(ActionRunnerRemap, SendsWhatTheFrontAppNeeds) {
    const struct {
        const char* name;
        std::optional<std::string> frontmost;
        KeyShortcut shortcut;
        KeyShortcut sent;
    } rows[] = {
        {"vsCodeInsiders", "com.microsoft.VSCodeInsiders", controlTab, {124, editorTabFlags}},
        {"lookalikeIDIsNotVSCode", "com.microsoft.VSCode.helper", controlTab, controlTab},
        {"controlOptionTabInVSCode", vsCode, {48, control | option}, {124, editorTabFlags}},
        {"commandTabInVSCode", vsCode, {48, command}, {48, command}},
        {"plainTabInVSCode", vsCode, {48, 0}, {48, 0}},
        {"shiftCommandNInVSCode", vsCode, shiftCommandN, shiftCommandN},
        {"firefoxNightly", "org.mozilla.nightly", shiftCommandN, {35, command | shift}},
        {"optionShiftCommandNInFirefox",
         firefox,
         {45, command | shift | option},
         {45, command | shift | option}},
        {"commandNInFirefox", firefox, {45, command}, {45, command}},
        {"shiftCommandNWithNoAppID", std::nullopt, shiftCommandN, shiftCommandN},
        {"controlTabInFirefox", firefox, controlTab, controlTab},
    };
    for (const auto& row : rows)
        EXPECT_EQ(ActionRunner::remapped(row.shortcut, row.frontmost), row.sent) << row.name;
}

using ActionRunnerDeathTest = ActionRunnerTest;

TEST_F(ActionRunnerDeathTest, KeyCodeOutsideSixteenBitsIsAProgrammingError) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(run(custom({65536, 0})), "key code 65536");
    EXPECT_DEATH(run(custom({-1, command})), "key code -1");
}

}  // namespace
}  // namespace ostrelle::testing
