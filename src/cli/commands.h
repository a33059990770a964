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

}  // namespace ostrelle::cli
