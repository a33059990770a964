#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "actions/key_shortcut.h"

namespace ostrelle {

// What an action option does. One small value type per kind, in the order the kinds are listed
// to the user; the runner visits the variant.
struct ActionKind {
    struct Shortcut {  // send this key shortcut
        KeyShortcut shortcut;
        friend bool operator==(const Shortcut&, const Shortcut&) = default;
    };
    struct SelectTab {  // select the first or last tab of the front window
        bool last = false;
        friend bool operator==(const SelectTab&, const SelectTab&) = default;
    };
    struct SwitchApp {  // switch to the next or, reversed, the previous app
        bool reverse = false;
        friend bool operator==(const SwitchApp&, const SwitchApp&) = default;
    };
    struct SwitchWindow {  // switch to the next or, reversed, the previous window of the app
        bool reverse = false;
        friend bool operator==(const SwitchWindow&, const SwitchWindow&) = default;
    };
    struct OpenApp {  // open the application bundle at this absolute path
        std::string path;
        friend bool operator==(const OpenApp&, const OpenApp&) = default;
    };
    struct OpenAppGrid {  // open the system's grid of applications, wherever this system keeps it
        friend bool operator==(const OpenAppGrid&, const OpenAppGrid&) = default;
    };
    struct DockNotification {  // post this Dock notification
        std::string name;
        friend bool operator==(const DockNotification&, const DockNotification&) = default;
    };
    struct MenuExtra {  // press the first menu-bar extra present among these identifiers
        std::vector<std::string> identifiers;
        friend bool operator==(const MenuExtra&, const MenuExtra&) = default;
    };
    struct SwitchSpace {  // move one space left, or right
        bool left = false;
        friend bool operator==(const SwitchSpace&, const SwitchSpace&) = default;
    };
    struct MediaKey {  // press this system media key (the NX_KEYTYPE_… numbering)
        std::int32_t key = 0;
        friend bool operator==(const MediaKey&, const MediaKey&) = default;
    };
    struct CommandClick {  // command-click at the pointer
        friend bool operator==(const CommandClick&, const CommandClick&) = default;
    };
    struct DuplicateTab {  // duplicate the front browser tab
        friend bool operator==(const DuplicateTab&, const DuplicateTab&) = default;
    };
    struct CustomShortcut {  // send the shortcut stored in the reference
        friend bool operator==(const CustomShortcut&, const CustomShortcut&) = default;
    };
    struct ChooseApp {  // open the app stored in the reference
        friend bool operator==(const ChooseApp&, const ChooseApp&) = default;
    };

    using Value =
        std::variant<Shortcut, SelectTab, SwitchApp, SwitchWindow, OpenApp, OpenAppGrid, DockNotification,
                     MenuExtra, SwitchSpace, MediaKey, CommandClick, DuplicateTab, CustomShortcut, ChooseApp>;

    Value value;

    static ActionKind shortcut(std::int64_t key, EventFlags flags) {
        return {Shortcut{KeyShortcut{key, flags}}};
    }
    static ActionKind selectTab(bool last) { return {SelectTab{last}}; }
    static ActionKind switchApp(bool reverse) { return {SwitchApp{reverse}}; }
    static ActionKind switchWindow(bool reverse) { return {SwitchWindow{reverse}}; }
    static ActionKind openApp(std::string path) { return {OpenApp{std::move(path)}}; }
    static ActionKind openAppGrid() { return {OpenAppGrid{}}; }
    static ActionKind dockNotification(std::string name) { return {DockNotification{std::move(name)}}; }
    static ActionKind menuExtra(std::vector<std::string> identifiers) {
        return {MenuExtra{std::move(identifiers)}};
    }
    static ActionKind switchSpace(bool left) { return {SwitchSpace{left}}; }
    static ActionKind mediaKey(std::int32_t key) { return {MediaKey{key}}; }
    static ActionKind commandClick() { return {CommandClick{}}; }
    static ActionKind duplicateTab() { return {DuplicateTab{}}; }
    static ActionKind customShortcut() { return {CustomShortcut{}}; }
    static ActionKind chooseApp() { return {ChooseApp{}}; }

    template <typename Kind>
    bool is() const {
        return std::holds_alternative<Kind>(value);
    }
    template <typename Kind>
    const Kind* as() const {
        return std::get_if<Kind>(&value);
    }

    friend bool operator==(const ActionKind&, const ActionKind&) = default;
};

// The kind's case name ("shortcut", "selectTab", …), for logs and test messages.
std::string_view toString(const ActionKind& kind);

std::size_t hashOf(const ActionKind& kind);

}  // namespace ostrelle
