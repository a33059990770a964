#include "cli/commands.h"
#include "cli/output.h"
#include "gestures/gesture_catalog.h"

namespace ostrelle::cli {
namespace {

int runGestures(Arguments arguments) {
    if (!arguments.empty()) {
        if (arguments.size() == 1 && isHelpOption(arguments[0])) {
            printCommandUsage(gesturesCommand());
            return exitSuccess;
        }
        return usageError(gesturesCommand(), "gestures takes no arguments");
    }
    const auto& enabled = GestureCatalog::enabled();
    for (const GestureGroup& group : GestureCatalog::allGroups()) {
        for (const GestureDef& def : group.gestures) {
            nlohmann::ordered_json line = nlohmann::ordered_json::object();
            line["id"] = def.id;
            line["name"] = def.name;
            line["hint"] = def.hint;
            line["fingers"] = def.fingers;
            line["group"] = group.id;
            line["sortKey"] = Gesture(def.id).sortKey();
            line["enabled"] = enabled.contains(def.id);
            printLine(line);
        }
    }
    return exitSuccess;
}

}  // namespace

const Command& gesturesCommand() {
    static const Command command{
        "gestures",
        "",
        "Lists every built-in gesture in catalog order, one JSON object per line.",
        runGestures,
    };
    return command;
}

}  // namespace ostrelle::cli
