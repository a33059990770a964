#include "cli/argument_parser.h"
#include "cli/catalog_ids.h"
#include "cli/closest_ids.h"
#include "cli/commands.h"
#include "cli/host_conflicts.h"
#include "cli/output.h"
#include "gestures/gesture_catalog.h"

namespace ostrelle::cli {
namespace {

nlohmann::ordered_json describe(const Gesture& gesture) {
    nlohmann::ordered_json line = nlohmann::ordered_json::object();
    line["id"] = gesture.id;
    line["name"] = gesture.displayName();
    line["hint"] = gesture.hint();
    line["fingers"] = gesture.fingers();
    line["sortKey"] = gesture.sortKey();
    line["enabled"] = GestureCatalog::isEnabled(gesture);
    if (const auto conflict = hostConflict(gesture)) {
        line["conflict"] = conflict->text;
        if (conflict->settings) line["settings"] = conflict->settings->name;
    }
    return line;
}

int runDescribe(Arguments arguments) {
    const ParsedArguments parsed =
        parseArguments(arguments, {.positionals = {"GESTURE"}, .flags = {}, .valued = {}});
    if (const auto status = finishEarly(describeCommand(), parsed)) return *status;

    const std::string& id = parsed.positionals[0];
    const Gesture* gesture = GestureCatalog::known(id);
    if (!gesture) {
        printError(unknownIDMessage("gesture", id, catalogGestureIDs()));
        return exitBadInput;
    }
    printLine(describe(*gesture));
    return exitSuccess;
}

}  // namespace

const Command& describeCommand() {
    static const Command command{
        "describe",
        "GESTURE",
        "Describes one built-in gesture as one JSON object: {\"id\", \"name\", \"hint\", \"fingers\", "
        "\"sortKey\", \"enabled\", \"conflict\", \"settings\"}. \"conflict\" is the clash with the "
        "system's own trackpad gestures (on Linux, those of the desktop named by XDG_CURRENT_DESKTOP: "
        "GNOME or KDE Plasma), left out when there is none; \"settings\" names the settings page that "
        "controls it, left out when none does.",
        runDescribe,
    };
    return command;
}

}  // namespace ostrelle::cli
