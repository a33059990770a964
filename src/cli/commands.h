#pragma once

#include "cli/command.h"

namespace ostrelle::cli {

// Each subcommand lives in its own file and describes itself here.
const Command& replayCommand();
const Command& gesturesCommand();
const Command& describeCommand();
const Command& actionsCommand();
const Command& bindingsCommand();
const Command& bindCommand();
const Command& unbindCommand();
// Linux: the live touchpad as a recording.
const Command& recordCommand();
// The background service and the commands that reach it (Linux).
const Command& runCommand();
const Command& toggleCommand();
const Command& statusCommand();
const Command& settingsCommand();

// These stop on SIGTERM and SIGINT by themselves, finishing their work first.
inline bool handlesTerminationSignals(std::string_view command) {
    return command == "run" || command == "record";
}

}  // namespace ostrelle::cli
