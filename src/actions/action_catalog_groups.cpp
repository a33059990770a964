#include <optional>

#include "actions/action_catalog.h"

namespace ostrelle {
namespace {

// Key codes in these tables are macOS virtual key codes (kVK_…).
constexpr EventFlags none = 0;
constexpr EventFlags command = EventFlag::command;
constexpr EventFlags shift = EventFlag::shift;
constexpr EventFlags control = EventFlag::control;
constexpr EventFlags option = EventFlag::option;
constexpr EventFlags fn = EventFlag::secondaryFn;

// System media keys, in the NX_KEYTYPE_… numbering.
constexpr std::int32_t soundUp = 0;
constexpr std::int32_t soundDown = 1;
constexpr std::int32_t brightnessUp = 2;
constexpr std::int32_t brightnessDown = 3;
constexpr std::int32_t mute = 7;
constexpr std::int32_t play = 16;
constexpr std::int32_t nextTrack = 17;
constexpr std::int32_t previousTrack = 18;

constexpr auto tabNumberNote =
    "In Safari, needs “Use ⌘-1 through ⌘-9 to switch tabs” on in Settings → Tabs (on by default).";
constexpr auto nativeTabsNote =
    "Only works in apps with native macOS tabs, such as Finder, Terminal and Safari.";
constexpr auto nextWindowNote =
    "Needs “Move focus to next window” on in System Settings → Keyboard → Keyboard Shortcuts → Keyboard "
    "(on by default).";
constexpr auto screenshotNote =
    "Needs the screenshot shortcuts on in System Settings → Keyboard → Keyboard Shortcuts → Screenshots "
    "(on by default).";

ActionOption entry(std::string id, std::string label, std::string keys, ActionKind kind,
                   std::optional<std::string> note = std::nullopt) {
    return {std::move(id), std::move(label), std::move(keys), std::move(kind), std::move(note)};
}

// The two tab-switching rows and the new/close rows are shared by browsers and tabbed apps.
ActionOption switchTabsRight() {
    return entry("right", "Switch tabs right", "⌃⇥", ActionKind::shortcut(48, control));
}
ActionOption switchTabsLeft() {
    return entry("left", "Switch tabs left", "⌃⇧⇥", ActionKind::shortcut(48, control | shift));
}
ActionOption openNewTab() {
    return entry("newtab", "Open new tab", "⌘T", ActionKind::shortcut(17, command));
}
ActionOption closeTab() {
    return entry("close", "Close tab", "⌘W", ActionKind::shortcut(13, command));
}

AppActions browsers() {
    AppActions app{"browsers", "Browsers", "globe", {}};
    app.options = {
        switchTabsRight(),
        switchTabsLeft(),
        entry("first", "Go to first tab", "⌘1", ActionKind::shortcut(18, command), tabNumberNote),
        entry("last", "Go to last tab", "⌘9", ActionKind::shortcut(25, command), tabNumberNote),
        openNewTab(),
        closeTab(),
        entry("reopen", "Reopen closed tab", "⇧⌘T", ActionKind::shortcut(17, command | shift)),
        entry("forward", "Forward", "⌘]", ActionKind::shortcut(30, command)),
        entry("back", "Back", "⌘[", ActionKind::shortcut(33, command)),
        entry("reload", "Reload Page", "⌘R", ActionKind::shortcut(15, command)),
        entry("linktab", "Open link in new tab", "⌘-click", ActionKind::commandClick(),
              "Opens the link under the pointer, so point at a link before the gesture."),
        entry("duplicate", "Duplicate tab", "", ActionKind::duplicateTab()),
        entry("zoomin", "Zoom in", "⌘=", ActionKind::shortcut(24, command)),
        entry("zoomout", "Zoom out", "⌘-", ActionKind::shortcut(27, command)),
        entry("actualsize", "Actual size", "⌘0", ActionKind::shortcut(29, command)),
        entry("find", "Find on page", "⌘F", ActionKind::shortcut(3, command)),
        entry("address", "Focus address bar", "⌘L", ActionKind::shortcut(37, command)),
        entry("bookmark", "Bookmark page", "⌘D", ActionKind::shortcut(2, command)),
        entry("history", "Show history", "⌘Y", ActionKind::shortcut(16, command)),
        entry("stop", "Stop loading", "⌘.", ActionKind::shortcut(47, command)),
        entry("newwindow", "New window", "⌘N", ActionKind::shortcut(45, command)),
        entry("private", "New private window", "⇧⌘N", ActionKind::shortcut(45, command | shift)),
        entry("top", "Scroll to top", "⌘↑", ActionKind::shortcut(126, command)),
        entry("bottom", "Scroll to bottom", "⌘↓", ActionKind::shortcut(125, command)),
        entry("pageup", "Page up", "⇞", ActionKind::shortcut(116, none)),
        entry("pagedown", "Page down", "⇟", ActionKind::shortcut(121, none)),
        entry("print", "Print page", "⌘P", ActionKind::shortcut(35, command)),
    };
    return app;
}

// "first" and "last" go through accessibility here: ⌘1 and ⌘9 mean other things in most apps.
AppActions tabbedApps() {
    AppActions app{"tabs", "Tabbed apps", "rectangle.stack", {}};
    app.options = {
        switchTabsRight(),
        switchTabsLeft(),
        entry("first", "Go to first tab", "", ActionKind::selectTab(false), nativeTabsNote),
        entry("last", "Go to last tab", "", ActionKind::selectTab(true), nativeTabsNote),
        openNewTab(),
        closeTab(),
    };
    return app;
}

AppActions windowSwitcher() {
    AppActions app{"switcher", "Window Switcher", "square.on.square", {}};
    app.options = {
        entry("right", "Switch apps right", "⌘⇥", ActionKind::switchApp(false)),
        entry("left", "Switch apps left", "⌘⇧⇥", ActionKind::switchApp(true)),
        entry("windowright", "Switch windows right", "⌘`", ActionKind::switchWindow(false), nextWindowNote),
        entry("windowleft", "Switch windows left", "⇧⌘`", ActionKind::switchWindow(true), nextWindowNote),
    };
    return app;
}

AppActions systemActions() {
    // "mission" shows ⌃↑ but opens the Mission Control app instead of sending the keys: deliberate.
    AppActions app{"system", "macOS", "command", {}};
    app.options = {
        entry("mission", "Mission Control", "⌃↑",
              ActionKind::openApp("/System/Applications/Mission Control.app")),
        entry("desktop", "Show Desktop", "F11", ActionKind::shortcut(103, fn),
              "Needs “Show Desktop” (F11) on in System Settings → Keyboard → Keyboard Shortcuts → "
              "Mission Control (on by default)."),
        entry("grid", "App Grid", "", ActionKind::openAppGrid()),
        entry("search", "Search", "⌘Space", ActionKind::shortcut(49, command),
              "Needs “Show Spotlight search” (⌘Space) on in System Settings → Keyboard → Keyboard "
              "Shortcuts → "
              "Spotlight (on by default)."),
        entry("lock", "Lock Screen", "⌃⌘Q", ActionKind::shortcut(12, control | command)),
        entry("screenshot", "Screenshot", "⇧⌘4", ActionKind::shortcut(21, command | shift), screenshotNote),
        entry("notify", "Notifications", "", ActionKind::menuExtra({"com.apple.menuextra.clock"})),
        entry("focus", "Focus Mode", "",
              ActionKind::menuExtra({"com.apple.menuextra.focusmode", "com.apple.menuextra.controlcenter"}),
              "Opens the Focus menu only when Focus is in the menu bar (System Settings → Control Center → "
              "Focus → Always Show in Menu Bar). Otherwise it opens Control Center, where Focus is the "
              "first "
              "tile."),
        entry("expose", "App windows (App Exposé)", "",
              ActionKind::dockNotification("com.apple.expose.front.awake")),
        entry("spaceleft", "Move left a space", "⌃←", ActionKind::switchSpace(true),
              "Needs “Move left a space” on in System Settings → Keyboard → Keyboard Shortcuts → "
              "Mission Control (on by default)."),
        entry("spaceright", "Move right a space", "⌃→", ActionKind::switchSpace(false),
              "Needs “Move right a space” on in System Settings → Keyboard → Keyboard Shortcuts → "
              "Mission Control (on by default)."),
        entry("fullscreen", "Toggle full screen", "⌃⌘F", ActionKind::shortcut(3, control | command)),
        entry("minimize", "Minimize window", "⌘M", ActionKind::shortcut(46, command)),
        entry("hide", "Hide app", "⌘H", ActionKind::shortcut(4, command)),
        entry("hideothers", "Hide others", "⌥⌘H", ActionKind::shortcut(4, option | command)),
        entry("screenshotfull", "Screenshot whole screen", "⇧⌘3", ActionKind::shortcut(20, command | shift),
              screenshotNote),
        entry("screenshotoptions", "Screenshot & recording options", "⇧⌘5",
              ActionKind::shortcut(23, command | shift), screenshotNote),
        entry("emoji", "Emoji & symbols", "⌃⌘Space", ActionKind::shortcut(49, control | command),
              "Opens where you can type, so click into a text field first."),
        entry("copy", "Copy", "⌘C", ActionKind::shortcut(8, command)),
        entry("cut", "Cut", "⌘X", ActionKind::shortcut(7, command)),
        entry("paste", "Paste", "⌘V", ActionKind::shortcut(9, command)),
        entry("undo", "Undo", "⌘Z", ActionKind::shortcut(6, command)),
        entry("redo", "Redo", "⇧⌘Z", ActionKind::shortcut(6, command | shift)),
        entry("selectall", "Select all", "⌘A", ActionKind::shortcut(0, command)),
        entry("save", "Save", "⌘S", ActionKind::shortcut(1, command)),
        entry("volup", "Volume up", "", ActionKind::mediaKey(soundUp)),
        entry("voldown", "Volume down", "", ActionKind::mediaKey(soundDown)),
        entry("mute", "Mute", "", ActionKind::mediaKey(mute)),
        entry("brightup", "Brightness up", "", ActionKind::mediaKey(brightnessUp)),
        entry("brightdown", "Brightness down", "", ActionKind::mediaKey(brightnessDown)),
        entry("playpause", "Play/Pause", "", ActionKind::mediaKey(play)),
        entry("next", "Next track", "", ActionKind::mediaKey(nextTrack)),
        entry("previous", "Previous track", "", ActionKind::mediaKey(previousTrack)),
        entry("screensaver", "Start screen saver", "",
              ActionKind::openApp("/System/Library/CoreServices/ScreenSaverEngine.app")),
    };
    return app;
}

AppActions keyboard() {
    AppActions app{"keyboard", "Keyboard Shortcut", "keyboard", {}};
    app.options = {
        entry("custom", "Custom shortcut", "", ActionKind::customShortcut(),
              "Recording a system shortcut such as ⌘Space or ⌘Tab needs Accessibility permission for "
              "Ostrelle; without it the shortcut runs instead of being recorded."),
    };
    return app;
}

AppActions openApps() {
    AppActions app{"openapps", "Open Apps", "square.grid.2x2", {}};
    app.options = {
        entry("app", "Open an app", "", ActionKind::chooseApp()),
    };
    return app;
}

}  // namespace

const std::vector<AppActions>& ActionCatalog::apps() {
    static const std::vector<AppActions> groups{browsers(),      tabbedApps(), windowSwitcher(),
                                                systemActions(), keyboard(),   openApps()};
    return groups;
}

}  // namespace ostrelle
