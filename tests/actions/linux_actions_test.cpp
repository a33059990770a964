#include "actions/linux_actions.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <stdexcept>

#include "action_runner_fixture.h"
#include "actions/linux_key_codes.h"

namespace ostrelle::testing {
namespace {

constexpr std::uint16_t keyT = 20;
constexpr std::uint16_t keyK = 37;
constexpr EventFlags commandShift = EventFlag::command | EventFlag::shift;

std::string shownKeys(const LinuxActions& actions, const ActionRef& ref, std::optional<std::string> front) {
    const LinuxRendition* rendition = actions.rendition(ref, front);
    if (!rendition) return "(none)";
    if (rendition->unsupported) return "unsupported: " + *rendition->unsupported;
    std::string text;
    for (const LinuxChord& chord : rendition->chords)
        text += (text.empty() ? "" : ", ") + chord.display(actions.desktop());
    return text;
}

TEST(LinuxActionsTest, EveryDesktopGivesEveryOptionOfTheCatalogAMeaning) {
    // The built-in table stops the program when an option is missing; this reads it for each desktop.
    for (const LinuxDesktop desktop : {LinuxDesktop::gnome, LinuxDesktop::kde, LinuxDesktop::other}) {
        const LinuxActions actions(desktop);
        for (const AppActions& app : actions.catalog()) {
            for (const ActionOption& option : app.options) {
                const ActionRef ref{app.id, option.id, {}, {}};
                const bool ownEffect =
                    option.kind.is<ActionKind::CustomShortcut>() || option.kind.is<ActionKind::ChooseApp>();
                EXPECT_EQ(actions.rendition(ref, std::nullopt) == nullptr, ownEffect)
                    << app.id << "/" << option.id;
                EXPECT_EQ(option.keys.find("⌘"), std::string::npos) << app.id << "/" << option.id;
            }
        }
    }
}

TEST(LinuxActionsTest, OptionsSendWhatTheDesktopDoesForThem) {
    struct Row {
        LinuxDesktop desktop;
        std::string option;
        std::optional<std::string> front;
        std::string keys;
    };
    const std::vector<Row> rows{
        {LinuxDesktop::gnome, "system/lock", std::nullopt, "Super+L"},
        {LinuxDesktop::kde, "system/lock", std::nullopt, "Meta+L"},
        {LinuxDesktop::gnome, "system/mission", std::nullopt, "Super"},
        {LinuxDesktop::kde, "system/spaceleft", std::nullopt, "Ctrl+Meta+Left"},
        {LinuxDesktop::gnome, "browsers/duplicate", std::nullopt, "Ctrl+L, Alt+Enter"},
        {LinuxDesktop::gnome, "browsers/linktab", std::nullopt, "Ctrl+click"},
        // The runner's per-application rules, on Linux.
        {LinuxDesktop::gnome, "browsers/right", "com.microsoft.VSCode", "Ctrl+Page Down"},
        {LinuxDesktop::gnome, "browsers/right", "org.mozilla.firefox", "Ctrl+Tab"},
        {LinuxDesktop::kde, "browsers/private", "org.mozilla.firefox", "Ctrl+Shift+P"},
        {LinuxDesktop::kde, "browsers/private", "com.google.Chrome", "Ctrl+Shift+N"},
        {LinuxDesktop::gnome, "browsers/first", "org.mozilla.nightly", "Alt+1"},
        {LinuxDesktop::kde, "system/notify", std::nullopt,
         "unsupported: KDE Plasma has no shortcut that opens the notifications"},
    };
    for (const Row& row : rows) {
        const LinuxActions actions(row.desktop);
        const auto slash = row.option.find('/');
        const ActionRef ref{row.option.substr(0, slash), row.option.substr(slash + 1), {}, {}};
        EXPECT_EQ(shownKeys(actions, ref, row.front), row.keys) << row.option;
    }
}

TEST(LinuxActionsTest, TheCatalogShowsLinuxTextsUnderTheSameIds) {
    const LinuxActions gnome(LinuxDesktop::gnome);
    const ActionOption* mission = gnome.shownOption({"system", "mission", {}, {}});
    ASSERT_NE(mission, nullptr);
    EXPECT_EQ(mission->label, "Activities overview");
    EXPECT_EQ(gnome.shownOption({"browsers", "reopen", {}, {}})->keys, "Ctrl+Shift+T");
    EXPECT_EQ(*gnome.shownOption({"system", "hide", {}, {}})->note,
              "Not available on Linux: Linux desktops hide windows, not apps (use Minimize window).");
    EXPECT_EQ(gnome.catalog()[3].name, "Desktop");
    // The search finds Linux keys, not macOS ones.
    const auto found = ActionCatalog::filtered("ctrl+shift+n", gnome.catalog());
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].options.at(0).id, "private");

    ActionHost host;
    host.linuxActions = &gnome;
    EXPECT_EQ(ActionCatalog::summary({"system", "mission", {}, {}}, host), "Activities overview");
    const ActionRef custom{"keyboard", "custom", KeyShortcut{40, commandShift}, {}};
    EXPECT_EQ(ActionCatalog::summary(custom, host), "Press Shift+Super+K");
    EXPECT_EQ(ActionCatalog::pill({"keyboard", "custom", KeyShortcut{123, EventFlag::option}, {}}, host),
              "Alt+Left");
}

TEST(LinuxActionsTest, WindowClassesNameTheAppsOfThePerAppRules) {
    const LinuxActions actions(LinuxDesktop::other);
    EXPECT_EQ(actions.applicationID("Code"), "com.microsoft.VSCode");
}

TEST(LinuxActionsTest, ABrokenTableIsRefusedWithWhatIsWrong) {
    const std::string head = R"({"groupNames": {}, "windowClasses": {}, "options": {)";
    struct Row {
        std::string options;
        std::string expected;
    };
    const std::vector<Row> rows{
        {R"("browsers/nope": {"keys": "Ctrl+T"})", "browsers/nope: no such option in the catalog"},
        {R"("browsers/right": {"keys": "Ctrl+Tabb"})", "browsers/right: unknown keys \"Ctrl+Tabb\""},
        {R"("browsers/right": {"keys": "Ctrl+Tab", "colour": "red"})",
         "browsers/right: unknown member \"colour\""},
        {R"("browsers/right": {"keys": "Ctrl+Tab", "in": {"safari": {"keys": "Tab"}}})",
         "browsers/right: unknown app \"safari\""},
        {R"("browsers/right": {"label": "Next tab"})",
         "browsers/right: needs keys or a reason why it is unsupported"},
        {R"("browsers/right": {"keys": "Ctrl+Tab"})",
         "browsers/left: missing: every option of the catalog needs a Linux meaning"},
    };
    for (const Row& row : rows) {
        try {
            (void)LinuxActions::fromJSON(head + row.options + "}}", LinuxDesktop::gnome);
            ADD_FAILURE() << row.expected;
        } catch (const std::invalid_argument& error) {
            EXPECT_EQ(error.what(), row.expected);
        }
    }
}

TEST(LinuxChordTest, ReadsOnlyWellFormedChords) {
    EXPECT_EQ(LinuxChord::parse("Ctrl+Shift+T"), (LinuxChord{LinuxChord::ctrl | LinuxChord::shift, keyT}));
    EXPECT_EQ(LinuxChord::parse("Super"), (LinuxChord{0, linux_key::leftMeta}));
    for (const std::string_view bad : {"Ctrl+Ctrl+T", "Hyper+T", "Ctrl+", "", "T+Ctrl", "ctrl+t"}) {
        EXPECT_EQ(LinuxChord::parse(bad), std::nullopt) << bad;
    }
}

TEST(LinuxChordTest, RecordedLinuxKeysBecomeMacShortcutsOrAreRefused) {
    const RecordedLinuxKey k = shortcutFromLinux(keyK, LinuxChord::shift | LinuxChord::super);
    EXPECT_EQ(k.shortcut, (KeyShortcut{40, commandShift}));
    EXPECT_EQ(linuxChord(*k.shortcut), (LinuxChord{LinuxChord::shift | LinuxChord::super, keyK}));
    const std::uint16_t printKey = 99;  // a Mac keyboard has none
    EXPECT_EQ(shortcutFromLinux(printKey, LinuxChord::ctrl).shortcut, std::nullopt);
    EXPECT_NE(shortcutFromLinux(printKey, 0).refusal, "");
    EXPECT_EQ(linuxChord(KeyShortcut{0x3F, 0}), std::nullopt);  // fn
}

class LinuxActionRunnerTest : public ActionRunnerTest {
  protected:
    LinuxActionRunnerTest() { system.linuxKeyCodes = true; }

    // Each key pressed in the order given, then let go of in reverse.
    static std::vector<RecordedEvent> chord(const std::vector<std::uint16_t>& codes) {
        std::vector<RecordedEvent> events;
        for (const std::uint16_t code : codes) events.emplace_back(recorded::LinuxKey{code, true});
        for (auto code = codes.rbegin(); code != codes.rend(); ++code)
            events.emplace_back(recorded::LinuxKey{*code, false});
        return events;
    }

    LinuxActions gnome{LinuxDesktop::gnome};
    ActionRunner linuxRunner{system, queue, ActionHost{nullptr, &apps, std::nullopt, &gnome}};
};

TEST_F(LinuxActionRunnerTest, ChordsHoldTheirModifiersAroundTheKeyInAFixedOrder) {
    linuxRunner.run(actionRef("browsers", "reopen"));
    linuxRunner.run(actionRef("keyboard", "custom", KeyShortcut{40, commandShift | EventFlag::control}));
    const auto ctrl = linux_key::leftCtrl;
    const auto shift = linux_key::leftShift;
    const auto super = linux_key::leftMeta;
    std::vector<RecordedEvent> expected = chord({ctrl, shift, keyT});
    std::ranges::copy(chord({ctrl, shift, super, keyK}), std::back_inserter(expected));
    EXPECT_EQ(events(), expected);
    EXPECT_TRUE(errors().empty());
}

TEST_F(LinuxActionRunnerTest, WhatCantBeDoneIsLoggedAndBeeped) {
    struct Row {
        ActionRef action;
        std::optional<std::string> unavailable;
        std::string error;
    };
    const std::vector<Row> rows{
        {actionRef("system", "hide"), std::nullopt,
         "action failed: Linux desktops hide windows, not apps (use Minimize window)"},
        {actionRef("keyboard", "custom", KeyShortcut{0x3F, 0}), std::nullopt,
         "action failed: Key 63 uses a key that a Linux keyboard doesn't have"},
        {actionRef("browsers", "newtab"), "no way to send keys", "action failed: no way to send keys"},
    };
    for (const Row& row : rows) {
        system.clearRecorded();
        system.keyCodesUnavailable = row.unavailable;
        linuxRunner.run(row.action);
        EXPECT_EQ(events(), std::vector<RecordedEvent>{beep}) << row.error;
        ASSERT_FALSE(errors().empty());
        EXPECT_EQ(errors().back(), row.error);
    }
}

}  // namespace
}  // namespace ostrelle::testing
