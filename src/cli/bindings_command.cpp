#include "cli/argument_parser.h"
#include "cli/binding_line.h"
#include "cli/commands.h"
#include "cli/output.h"
#include "cli/store_session.h"

namespace ostrelle::cli {
namespace {

int runBindings(Arguments arguments) {
    const ParsedArguments parsed =
        parseArguments(arguments, {.positionals = {}, .flags = {launchedBeforeFlag}, .valued = {fileOption}});
    if (const auto status = finishEarly(bindingsCommand(), parsed)) return *status;

    const auto store = openStore(bindingsFile(parsed), parsed.has(launchedBeforeFlag));
    for (const BindingStore::FingerGroup& group : store->groupedByFingers()) {
        for (const GestureBinding& binding : group.bindings) printLine(bindingLine(binding));
    }
    return exitSuccess;
}

}  // namespace

const Command& bindingsCommand() {
    static const Command command{
        "bindings",
        "[--file PATH] [--launched-before]",
        "Lists the saved bindings grouped by finger count, one JSON object per line. Opens the bindings "
        "file at PATH (default: the platform's location) the way the application does: a missing file "
        "is seeded (with the defaults for earlier users when --launched-before is given), an unreadable "
        "one set aside; what loading did is told on standard error.",
        runBindings,
    };
    return command;
}

}  // namespace ostrelle::cli
