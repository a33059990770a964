#include "cli/commands.h"

#include <array>

namespace ostrelle::cli {

std::span<const Command> commands() {
    // New subcommands (bindings, bind, actions, record, run) join this table.
    static const std::array table{
        replayCommand(),
        gesturesCommand(),
    };
    return table;
}

}  // namespace ostrelle::cli
