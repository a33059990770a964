#include <gtest/gtest.h>

#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "actions/action_catalog.h"

namespace ostrelle {
namespace {

// One catalog row as the user sees it, with the kind spelled out.
struct Row {
    std::string group;
    std::string id;
    std::string label;
    std::string keys;
    std::string kind;
    std::optional<std::string> note;

    friend bool operator==(const Row&, const Row&) = default;
};

std::ostream& operator<<(std::ostream& out, const Row& row) {
    return out << row.group << '/' << row.id << " [" << row.label << "] [" << row.keys << "] [" << row.kind
               << "] [" << row.note.value_or("-") << ']';
}

std::string hex(EventFlags flags) {
    std::ostringstream out;
    out << "0x" << std::uppercase << std::hex << flags;
    return out.str();
}

std::string word(bool value) {
    return value ? "true" : "false";
}

// The kind's name and payload, the way the rows below spell them.
struct Describe {
    std::string operator()(const ActionKind::Shortcut& k) const {
        return std::to_string(k.shortcut.key) + " " + hex(k.shortcut.flags);
    }
    std::string operator()(const ActionKind::SelectTab& k) const { return word(k.last); }
    std::string operator()(const ActionKind::SwitchApp& k) const { return word(k.reverse); }
    std::string operator()(const ActionKind::SwitchWindow& k) const { return word(k.reverse); }
    std::string operator()(const ActionKind::OpenApp& k) const { return k.path; }
    std::string operator()(const ActionKind::OpenAppGrid&) const { return ""; }
    std::string operator()(const ActionKind::DockNotification& k) const { return k.name; }
    std::string operator()(const ActionKind::MenuExtra& k) const {
        std::string joined;
        for (const std::string& identifier : k.identifiers) {
            if (!joined.empty()) joined += ',';
            joined += identifier;
        }
        return joined;
    }
    std::string operator()(const ActionKind::SwitchSpace& k) const { return word(k.left); }
    std::string operator()(const ActionKind::MediaKey& k) const { return std::to_string(k.key); }
    std::string operator()(const ActionKind::CommandClick&) const { return ""; }
    std::string operator()(const ActionKind::DuplicateTab&) const { return ""; }
    std::string operator()(const ActionKind::CustomShortcut&) const { return ""; }
    std::string operator()(const ActionKind::ChooseApp&) const { return ""; }
};

std::string describe(const ActionKind& kind) {
    std::string text(toString(kind));
    const std::string payload = std::visit(Describe{}, kind.value);
    if (!payload.empty()) text += " " + payload;
    return text;
}

// Every option of the catalog, in order, exactly as it must read.
const std::vector<Row>& expectedRows() {
    static const std::vector<Row> rows{
        // clang-format off
        {"browsers", "right", "Switch tabs right", "⌃⇥", "shortcut 48 0x40000", std::nullopt},
        {"browsers", "left", "Switch tabs left", "⌃⇧⇥", "shortcut 48 0x60000", std::nullopt},
        {"browsers", "first", "Go to first tab", "⌘1", "shortcut 18 0x100000", "In Safari, needs “Use ⌘-1 through ⌘-9 to switch tabs” on in Settings → Tabs (on by default)."},
        {"browsers", "last", "Go to last tab", "⌘9", "shortcut 25 0x100000", "In Safari, needs “Use ⌘-1 through ⌘-9 to switch tabs” on in Settings → Tabs (on by default)."},
        {"browsers", "newtab", "Open new tab", "⌘T", "shortcut 17 0x100000", std::nullopt},
        {"browsers", "close", "Close tab", "⌘W", "shortcut 13 0x100000", std::nullopt},
        {"browsers", "reopen", "Reopen closed tab", "⇧⌘T", "shortcut 17 0x120000", std::nullopt},
        {"browsers", "forward", "Forward", "⌘]", "shortcut 30 0x100000", std::nullopt},
        {"browsers", "back", "Back", "⌘[", "shortcut 33 0x100000", std::nullopt},
        {"browsers", "reload", "Reload Page", "⌘R", "shortcut 15 0x100000", std::nullopt},
        {"browsers", "linktab", "Open link in new tab", "⌘-click", "commandClick", "Opens the link under the pointer, so point at a link before the gesture."},
        {"browsers", "duplicate", "Duplicate tab", "", "duplicateTab", std::nullopt},
        {"browsers", "zoomin", "Zoom in", "⌘=", "shortcut 24 0x100000", std::nullopt},
        {"browsers", "zoomout", "Zoom out", "⌘-", "shortcut 27 0x100000", std::nullopt},
        {"browsers", "actualsize", "Actual size", "⌘0", "shortcut 29 0x100000", std::nullopt},
        {"browsers", "find", "Find on page", "⌘F", "shortcut 3 0x100000", std::nullopt},
        {"browsers", "address", "Focus address bar", "⌘L", "shortcut 37 0x100000", std::nullopt},
        {"browsers", "bookmark", "Bookmark page", "⌘D", "shortcut 2 0x100000", std::nullopt},
        {"browsers", "history", "Show history", "⌘Y", "shortcut 16 0x100000", std::nullopt},
        {"browsers", "stop", "Stop loading", "⌘.", "shortcut 47 0x100000", std::nullopt},
        {"browsers", "newwindow", "New window", "⌘N", "shortcut 45 0x100000", std::nullopt},
        {"browsers", "private", "New private window", "⇧⌘N", "shortcut 45 0x120000", std::nullopt},
        {"browsers", "top", "Scroll to top", "⌘↑", "shortcut 126 0x100000", std::nullopt},
        {"browsers", "bottom", "Scroll to bottom", "⌘↓", "shortcut 125 0x100000", std::nullopt},
        {"browsers", "pageup", "Page up", "⇞", "shortcut 116 0x0", std::nullopt},
        {"browsers", "pagedown", "Page down", "⇟", "shortcut 121 0x0", std::nullopt},
        {"browsers", "print", "Print page", "⌘P", "shortcut 35 0x100000", std::nullopt},
        {"tabs", "right", "Switch tabs right", "⌃⇥", "shortcut 48 0x40000", std::nullopt},
        {"tabs", "left", "Switch tabs left", "⌃⇧⇥", "shortcut 48 0x60000", std::nullopt},
        {"tabs", "first", "Go to first tab", "", "selectTab false", "Only works in apps with native macOS tabs, such as Finder, Terminal and Safari."},
        {"tabs", "last", "Go to last tab", "", "selectTab true", "Only works in apps with native macOS tabs, such as Finder, Terminal and Safari."},
        {"tabs", "newtab", "Open new tab", "⌘T", "shortcut 17 0x100000", std::nullopt},
        {"tabs", "close", "Close tab", "⌘W", "shortcut 13 0x100000", std::nullopt},
        {"switcher", "right", "Switch apps right", "⌘⇥", "switchApp false", std::nullopt},
        {"switcher", "left", "Switch apps left", "⌘⇧⇥", "switchApp true", std::nullopt},
        {"switcher", "windowright", "Switch windows right", "⌘`", "switchWindow false", "Needs “Move focus to next window” on in System Settings → Keyboard → Keyboard Shortcuts → Keyboard (on by default)."},
        {"switcher", "windowleft", "Switch windows left", "⇧⌘`", "switchWindow true", "Needs “Move focus to next window” on in System Settings → Keyboard → Keyboard Shortcuts → Keyboard (on by default)."},
        {"system", "mission", "Mission Control", "⌃↑", "openApp /System/Applications/Mission Control.app", std::nullopt},
        {"system", "desktop", "Show Desktop", "F11", "shortcut 103 0x800000", "Needs “Show Desktop” (F11) on in System Settings → Keyboard → Keyboard Shortcuts → Mission Control (on by default)."},
        {"system", "grid", "App Grid", "", "openAppGrid", std::nullopt},
        {"system", "search", "Search", "⌘Space", "shortcut 49 0x100000", "Needs “Show Spotlight search” (⌘Space) on in System Settings → Keyboard → Keyboard Shortcuts → Spotlight (on by default)."},
        {"system", "lock", "Lock Screen", "⌃⌘Q", "shortcut 12 0x140000", std::nullopt},
        {"system", "screenshot", "Screenshot", "⇧⌘4", "shortcut 21 0x120000", "Needs the screenshot shortcuts on in System Settings → Keyboard → Keyboard Shortcuts → Screenshots (on by default)."},
        {"system", "notify", "Notifications", "", "menuExtra com.apple.menuextra.clock", std::nullopt},
        {"system", "focus", "Focus Mode", "", "menuExtra com.apple.menuextra.focusmode,com.apple.menuextra.controlcenter", "Opens the Focus menu only when Focus is in the menu bar (System Settings → Control Center → Focus → Always Show in Menu Bar). Otherwise it opens Control Center, where Focus is the first tile."},
        {"system", "expose", "App windows (App Exposé)", "", "dockNotification com.apple.expose.front.awake", std::nullopt},
        {"system", "spaceleft", "Move left a space", "⌃←", "switchSpace true", "Needs “Move left a space” on in System Settings → Keyboard → Keyboard Shortcuts → Mission Control (on by default)."},
        {"system", "spaceright", "Move right a space", "⌃→", "switchSpace false", "Needs “Move right a space” on in System Settings → Keyboard → Keyboard Shortcuts → Mission Control (on by default)."},
        {"system", "fullscreen", "Toggle full screen", "⌃⌘F", "shortcut 3 0x140000", std::nullopt},
        {"system", "minimize", "Minimize window", "⌘M", "shortcut 46 0x100000", std::nullopt},
        {"system", "hide", "Hide app", "⌘H", "shortcut 4 0x100000", std::nullopt},
        {"system", "hideothers", "Hide others", "⌥⌘H", "shortcut 4 0x180000", std::nullopt},
        {"system", "screenshotfull", "Screenshot whole screen", "⇧⌘3", "shortcut 20 0x120000", "Needs the screenshot shortcuts on in System Settings → Keyboard → Keyboard Shortcuts → Screenshots (on by default)."},
        {"system", "screenshotoptions", "Screenshot & recording options", "⇧⌘5", "shortcut 23 0x120000", "Needs the screenshot shortcuts on in System Settings → Keyboard → Keyboard Shortcuts → Screenshots (on by default)."},
        {"system", "emoji", "Emoji & symbols", "⌃⌘Space", "shortcut 49 0x140000", "Opens where you can type, so click into a text field first."},
        {"system", "copy", "Copy", "⌘C", "shortcut 8 0x100000", std::nullopt},
        {"system", "cut", "Cut", "⌘X", "shortcut 7 0x100000", std::nullopt},
        {"system", "paste", "Paste", "⌘V", "shortcut 9 0x100000", std::nullopt},
        {"system", "undo", "Undo", "⌘Z", "shortcut 6 0x100000", std::nullopt},
        {"system", "redo", "Redo", "⇧⌘Z", "shortcut 6 0x120000", std::nullopt},
        {"system", "selectall", "Select all", "⌘A", "shortcut 0 0x100000", std::nullopt},
        {"system", "save", "Save", "⌘S", "shortcut 1 0x100000", std::nullopt},
        {"system", "volup", "Volume up", "", "mediaKey 0", std::nullopt},
        {"system", "voldown", "Volume down", "", "mediaKey 1", std::nullopt},
        {"system", "mute", "Mute", "", "mediaKey 7", std::nullopt},
        {"system", "brightup", "Brightness up", "", "mediaKey 2", std::nullopt},
        {"system", "brightdown", "Brightness down", "", "mediaKey 3", std::nullopt},
        {"system", "playpause", "Play/Pause", "", "mediaKey 16", std::nullopt},
        {"system", "next", "Next track", "", "mediaKey 17", std::nullopt},
        {"system", "previous", "Previous track", "", "mediaKey 18", std::nullopt},
        {"system", "screensaver", "Start screen saver", "", "openApp /System/Library/CoreServices/ScreenSaverEngine.app", std::nullopt},
        {"keyboard", "custom", "Custom shortcut", "", "customShortcut", "Recording a system shortcut such as ⌘Space or ⌘Tab needs Accessibility permission for Ostrelle; without it the shortcut runs instead of being recorded."},
        {"openapps", "app", "Open an app", "", "chooseApp", std::nullopt},
        // clang-format on
    };
    return rows;
}

TEST(ActionCatalogTable, EveryOptionReadsExactly) {
    std::vector<Row> actual;
    for (const AppActions& app : ActionCatalog::apps()) {
        for (const ActionOption& option : app.options) {
            actual.push_back(
                {app.id, option.id, option.label, option.keys, describe(option.kind), option.note});
        }
    }
    ASSERT_EQ(actual.size(), expectedRows().size());
    for (std::size_t i = 0; i < actual.size(); ++i) EXPECT_EQ(actual[i], expectedRows()[i]) << "row " << i;
}

TEST(ActionCatalogTable, GroupsInOrder) {
    struct Group {
        const char* id;
        const char* name;
        const char* symbol;
        std::size_t options;
    };
    const std::vector<Group> expected{
        {"browsers", "Browsers", "globe", 27},
        {"tabs", "Tabbed apps", "rectangle.stack", 6},
        {"switcher", "Window Switcher", "square.on.square", 4},
        {"system", "macOS", "command", 34},
        {"keyboard", "Keyboard Shortcut", "keyboard", 1},
        {"openapps", "Open Apps", "square.grid.2x2", 1},
    };
    const auto& apps = ActionCatalog::apps();
    ASSERT_EQ(apps.size(), expected.size());
    for (std::size_t i = 0; i < apps.size(); ++i) {
        EXPECT_EQ(apps[i].id, expected[i].id);
        EXPECT_EQ(apps[i].name, expected[i].name);
        EXPECT_EQ(apps[i].symbol, expected[i].symbol);
        EXPECT_EQ(apps[i].options.size(), expected[i].options) << apps[i].id;
    }
}

TEST(ActionCatalogTable, OptionIDsAreUniqueWithinTheirGroup) {
    for (const AppActions& app : ActionCatalog::apps()) {
        std::set<std::string> ids;
        for (const ActionOption& option : app.options) EXPECT_TRUE(ids.insert(option.id).second) << option.id;
    }
}

TEST(ActionCatalogTable, AppGridFollowsTheSystemVersion) {
    EXPECT_EQ(ActionCatalog::appGridPathFor(26), "/System/Applications/Apps.app");
    EXPECT_EQ(ActionCatalog::appGridPathFor(27), "/System/Applications/Apps.app");
    EXPECT_EQ(ActionCatalog::appGridPathFor(15), "/System/Applications/Launchpad.app");
    EXPECT_EQ(ActionCatalog::appGridPathFor(std::nullopt), "/System/Applications/Launchpad.app");
}

}  // namespace
}  // namespace ostrelle
