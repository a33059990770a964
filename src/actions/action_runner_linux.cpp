#include "actions/action_runner.h"
#include "actions/action_steps.h"
#include "actions/linux_actions.h"
#include "support/contract.h"
#include "support/log.h"

namespace ostrelle {
namespace {

constexpr std::string_view failurePrefix = "action failed: ";
constexpr std::string_view noLinuxKeySuffix = " uses a key that a Linux keyboard doesn't have";
constexpr std::string_view noFrontmostApp = "no frontmost app";

}  // namespace

void ActionRunner::runOnLinux(const ActionRef& action, const ActionCatalog::Entry& entry) {
    const LinuxActions& table = *host_.linuxActions;
    const ActionOption& shown = *table.shownOption(action);
    const std::optional<std::string> frontmostID = system_.workspace().frontmostApplicationID();

    std::vector<LinuxChord> chords;
    std::string keys = shown.keys;
    if (entry.option->kind.is<ActionKind::CustomShortcut>()) {
        if (!action.shortcut) {
            system_.feedback().beep();
            return;
        }
        keys = linuxDisplay(*action.shortcut, host_.keyboardLayout, table.desktop());
        const auto chord = linuxChord(*action.shortcut);
        if (!chord) {
            action_steps::fail(system_, std::string(failurePrefix) + keys + std::string(noLinuxKeySuffix));
            return;
        }
        chords.push_back(*chord);
    } else {
        const LinuxRendition* rendition = table.rendition(action, frontmostID);
        if (!rendition) contractViolation("the Linux actions table lacks an option of the catalog");
        if (rendition->unsupported) {
            action_steps::fail(system_, std::string(failurePrefix) + *rendition->unsupported);
            return;
        }
        chords = rendition->chords;
    }

    KeyCodeOutput* output = system_.keyCodes();
    if (!output) contractViolation("actions on a Linux desktop need an output of Linux key codes");
    if (const auto reason = output->unavailableReason()) {
        action_steps::fail(system_, std::string(failurePrefix) + *reason);
        return;
    }
    Log::pipeline().write(LogPipeline::Type::standard, "sending " + shown.label + " (" + keys + ") to " +
                                                           frontmostID.value_or(std::string(noFrontmostApp)));
    for (const LinuxChord& chord : chords) action_steps::press(*output, chord);
}

}  // namespace ostrelle
