#include "actions/action_runner.h"

#include <string_view>
#include <variant>

#include "actions/action_catalog.h"
#include "actions/action_steps.h"
#include "support/log.h"

namespace ostrelle {

using action_steps::fail;
using action_steps::post;
using action_steps::press;

namespace {

constexpr std::string_view unknownActionText = "action failed: unknown action ";
constexpr std::string_view missingAppText = "action failed: the app to open is missing";
constexpr std::string_view missingDockText =
    "action failed: CoreDockSendNotification is missing on this macOS";
constexpr std::string_view untrustedText =
    "action failed: Accessibility not granted, so keystrokes can't be sent";
constexpr std::string_view noShortcutRecorded = "none recorded";
constexpr std::string_view noFrontmostApp = "no frontmost app";

// Virtual key codes (the macOS numbering).
constexpr std::int64_t tabKey = 48;
constexpr std::int64_t graveKey = 50;  // `
constexpr std::int64_t commandKey = 55;
constexpr std::int64_t controlKey = 59;
constexpr std::int64_t leftArrowKey = 123;
constexpr std::int64_t rightArrowKey = 124;
constexpr std::int64_t nKey = 45;
constexpr std::int64_t pKey = 35;

// ⌥⌘ with the bits a real arrow key carries (numeric pad, fn); they replace the shortcut's flags.
constexpr EventFlags editorTabSwitchFlags = 0xB80000;
constexpr EventFlags commandShift = EventFlag::command | EventFlag::shift;

// The mouse is pressed with command held, which browsers read as "open in a new tab".
constexpr EventFlags commandClickFlags = EventFlag::command;

// A system-defined media-key event: data1 has the key in its upper 16 bits and the state below;
// the same value doubles as the event's modifier flags.
constexpr std::uint32_t mediaKeyDownState = 0xA00;
constexpr std::uint32_t mediaKeyUpState = 0xB00;
constexpr unsigned mediaKeyShift = 16;

// Computed in 32 bits and widened with sign, as the system's own 32-bit field would hold it.
std::int64_t mediaKeyData1(std::int32_t code, std::uint32_t state) {
    const std::uint32_t bits = (static_cast<std::uint32_t>(code) << mediaKeyShift) | state;
    return static_cast<std::int32_t>(bits);
}

std::string pipelineLine(const ActionRef& action, const ActionOption& option,
                         const std::optional<std::string>& frontmostID, const KeyboardLayout* layout) {
    std::string keys = option.keys;
    if (option.kind.is<ActionKind::CustomShortcut>()) {
        keys = action.shortcut ? action.shortcut->display(layout) : std::string(noShortcutRecorded);
    }
    return "sending " + option.label + " (" + keys + ") to " +
           frontmostID.value_or(std::string(noFrontmostApp));
}

}  // namespace

const std::set<std::string, std::less<>>& ActionRunner::vsCodeIDs() {
    static const std::set<std::string, std::less<>> ids{"com.microsoft.VSCode",
                                                        "com.microsoft.VSCodeInsiders", "com.vscodium",
                                                        "com.todesktop.230313mzl4w4u92"};
    return ids;
}

const std::set<std::string, std::less<>>& ActionRunner::firefoxIDs() {
    static const std::set<std::string, std::less<>> ids{
        "org.mozilla.firefox", "org.mozilla.firefoxdeveloperedition", "org.mozilla.nightly"};
    return ids;
}

// One handler per kind, so that a kind added later without a handler doesn't compile.
struct ActionRunner::Dispatch {
    ActionRunner& runner;
    const ActionRef& action;
    const std::optional<std::string>& frontmostID;

    void operator()(const ActionKind::Shortcut& kind) const {
        const KeyShortcut sent = remapped(kind.shortcut, frontmostID);
        press(runner.system_, sent.key, sent.flags);
    }
    void operator()(const ActionKind::SelectTab& kind) const { runner.selectTab(kind.last); }
    void operator()(const ActionKind::SwitchApp& kind) const { runner.switchWith(tabKey, kind.reverse); }
    void operator()(const ActionKind::SwitchWindow& kind) const { runner.switchWith(graveKey, kind.reverse); }
    void operator()(const ActionKind::MenuExtra& kind) const { runner.pressMenuExtra(kind.identifiers); }
    void operator()(const ActionKind::SwitchSpace& kind) const { runner.switchSpace(kind.left); }
    void operator()(const ActionKind::MediaKey& kind) const { runner.mediaKey(kind.key); }
    void operator()(const ActionKind::CommandClick&) const { runner.commandClick(); }
    void operator()(const ActionKind::DuplicateTab&) const { runner.duplicateTab(); }
    void operator()(const ActionKind::CustomShortcut&) const {
        if (action.shortcut) {
            press(runner.system_, action.shortcut->key, action.shortcut->flags);
        } else {
            runner.system_.feedback().beep();
        }
    }
    // These were handled before the permission check and can't arrive here; should one slip
    // through, the user hears that nothing happened.
    void operator()(const ActionKind::OpenApp&) const { runner.system_.feedback().beep(); }
    void operator()(const ActionKind::OpenAppGrid&) const { runner.system_.feedback().beep(); }
    void operator()(const ActionKind::DockNotification&) const { runner.system_.feedback().beep(); }
    void operator()(const ActionKind::ChooseApp&) const { runner.system_.feedback().beep(); }
};

void ActionRunner::run(const ActionRef& action) {
    const auto entry = ActionCatalog::lookup(action);
    if (!entry) {
        fail(system_, std::string(unknownActionText) + action.appID + "/" + action.optionID);
        return;
    }
    const ActionKind& kind = entry->option->kind;

    // Opening things and the Dock work without the accessibility permission.
    if (kind.is<ActionKind::ChooseApp>()) {
        if (action.app && ActionCatalog::appName(*action.app, host_.appFiles)) {
            system_.workspace().openApplication(action.app->path());
        } else {
            fail(system_, missingAppText);
        }
        return;
    }
    if (host_.linuxActions) {
        runOnLinux(action, *entry);
        return;
    }
    if (const auto* dock = kind.as<ActionKind::DockNotification>()) {
        if (!system_.workspace().sendDockNotification(dock->name)) fail(system_, missingDockText);
        return;
    }
    if (const auto* open = kind.as<ActionKind::OpenApp>()) {
        system_.workspace().openApplication(open->path);
        return;
    }
    if (kind.is<ActionKind::OpenAppGrid>()) {
        system_.workspace().openApplication(ActionCatalog::appGridPathFor(host_.macOSMajorVersion));
        return;
    }

    if (!system_.accessibility().isProcessTrusted()) {
        fail(system_, untrustedText);
        return;
    }
    const std::optional<std::string> frontmostID = system_.workspace().frontmostApplicationID();
    Log::pipeline().write(LogPipeline::Type::standard,
                          pipelineLine(action, *entry->option, frontmostID, host_.keyboardLayout));
    std::visit(Dispatch{*this, action, frontmostID}, kind.value);
}

KeyShortcut ActionRunner::remapped(const KeyShortcut& shortcut,
                                   const std::optional<std::string>& frontmostID) {
    if (!frontmostID) return shortcut;
    if (shortcut.key == tabKey && (shortcut.flags & EventFlag::control) != 0 &&
        vsCodeIDs().contains(*frontmostID)) {
        // The editor switches tabs with ⌥⌘→/← and reads ⌃⇥ as "recent file"; shift picks the direction.
        const bool backwards = (shortcut.flags & EventFlag::shift) != 0;
        return {backwards ? leftArrowKey : rightArrowKey, editorTabSwitchFlags};
    }
    if (shortcut.key == nKey && shortcut.flags == commandShift && firefoxIDs().contains(*frontmostID)) {
        // This browser opens its private window with ⇧⌘P; ⇧⌘N does nothing there.
        return {pKey, commandShift};
    }
    return shortcut;
}

void ActionRunner::switchWith(std::int64_t key, bool reverse) {
    // Command is held as a key of its own so the switcher stays up for the press, as when typed.
    post(system_, commandKey, true, EventFlag::command);
    press(system_, key, reverse ? commandShift : EventFlag::command);
    post(system_, commandKey, false, 0);
}

void ActionRunner::switchSpace(bool left) {
    post(system_, controlKey, true, EventFlag::control);
    press(system_, left ? leftArrowKey : rightArrowKey, EventFlag::control);
    post(system_, controlKey, false, 0);
}

void ActionRunner::commandClick() {
    EventOutput& events = system_.events();
    const std::optional<Point> location = events.pointerLocation();
    if (!location) {
        system_.feedback().beep();
        return;
    }
    events.postMouse(MouseEventType::leftDown, *location, commandClickFlags);
    events.postMouse(MouseEventType::leftUp, *location, commandClickFlags);
}

void ActionRunner::mediaKey(std::int32_t code) {
    EventOutput& events = system_.events();
    events.postMediaKey(mediaKeyDownState, mediaKeyData1(code, mediaKeyDownState));
    events.postMediaKey(mediaKeyUpState, mediaKeyData1(code, mediaKeyUpState));
}

}  // namespace ostrelle
