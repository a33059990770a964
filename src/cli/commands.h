#pragma once

#include "cli/command.h"

namespace ostrelle::cli {

// Each subcommand lives in its own file and describes itself here.
const Command& replayCommand();
const Command& gesturesCommand();

}  // namespace ostrelle::cli
