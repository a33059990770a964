#include <fmt/format.h>

#include "cli/argument_parser.h"
#include "cli/binding_line.h"
#include "cli/catalog_ids.h"
#include "cli/closest_ids.h"
#include "cli/commands.h"
#include "cli/output.h"
#include "cli/store_session.h"
#include "gestures/gesture_catalog.h"

namespace ostrelle::cli {
namespace {

// A typo is best matched against what is actually bound, then against the catalog.
std::vector<std::string> candidateIDs(const BindingStore& store) {
    std::vector<std::string> ids;
    for (const GestureBinding& binding : store.bindings()) ids.push_back(binding.gesture.id);
    for (std::string& id : catalogGestureIDs()) ids.push_back(std::move(id));
    return ids;
}

int runUnbind(Arguments arguments) {
    const ParsedArguments parsed =
        parseArguments(arguments, {.positionals = {"GESTURE"}, .flags = {}, .valued = {fileOption}});
    if (const auto status = finishEarly(unbindCommand(), parsed)) return *status;

    const std::string& gestureID = parsed.positionals[0];
    const auto store = openStore(bindingsFile(parsed), false);
    // Custom gesture ids are accepted here: removing a drawn shape needs no trackpad.
    const GestureBinding* binding = store->bindingFor(Gesture(gestureID));
    if (!binding) {
        if (GestureCatalog::find(gestureID)) {
            printError(fmt::format("{} is not bound", gestureID));
            return exitRefused;
        }
        printError(unknownIDMessage("gesture", gestureID, candidateIDs(*store)));
        return exitBadInput;
    }
    // A hand-edited file may bind the gesture twice; unbinding leaves it free either way.
    while (binding) {
        const GestureBinding removed = *binding;
        store->remove(removed.id);
        printLine(bindingLine(removed));
        binding = store->bindingFor(Gesture(gestureID));
    }
    return exitSuccess;
}

}  // namespace

const Command& unbindCommand() {
    static const Command command{
        "unbind",
        "GESTURE [--file PATH]",
        "Removes the binding of a gesture and prints what it removed as JSON objects, one per line. A "
        "gesture that is not bound "
        "is refused (exit status 1).",
        runUnbind,
    };
    return command;
}

}  // namespace ostrelle::cli
