#include "cli/commands.h"

#include <array>

namespace ostrelle::cli {

std::span<const Command> commands() {
    // New subcommands join this table.
    static const std::array table {
        replayCommand(), gesturesCommand(), describeCommand(), actionsCommand(), bindingsCommand(),
            bindCommand(), unbindCommand(),
#if defined(__linux__)
            recordCommand(),
#endif
#if defined(OSTRELLE_SERVICE)
            runCommand(), toggleCommand(), statusCommand(), settingsCommand(),
#endif
    };
    return table;
}

}  // namespace ostrelle::cli
