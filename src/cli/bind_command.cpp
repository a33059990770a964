#include <fmt/format.h>

#include "actions/action_catalog.h"
#include "cli/action_argument.h"
#include "cli/argument_parser.h"
#include "cli/binding_line.h"
#include "cli/catalog_ids.h"
#include "cli/closest_ids.h"
#include "cli/command_line_host.h"
#include "cli/commands.h"
#include "cli/output.h"
#include "cli/store_session.h"
#include "gestures/gesture_catalog.h"
#include "support/wall_clock.h"

namespace ostrelle::cli {
namespace {

constexpr std::string_view customIDMarker = ".custom.";

// Only enabled built-in gestures: a drawn shape needs a trackpad and the application's editor.
std::optional<std::string> gestureProblem(const std::string& id) {
    if (GestureCatalog::enabled().contains(id)) return std::nullopt;
    if (id.find(customIDMarker) != std::string::npos) {
        return "custom gestures are drawn in the application; the command line binds built-in gestures only";
    }
    if (GestureCatalog::find(id)) return fmt::format("gesture \"{}\" is not enabled and cannot be bound", id);
    return unknownIDMessage("gesture", id, enabledGestureIDs());
}

int runBind(Arguments arguments) {
    const ParsedArguments parsed =
        parseArguments(arguments, {.positionals = {"GESTURE", "APPID/OPTIONID"},
                                   .flags = {launchedBeforeFlag},
                                   .valued = {fileOption, shortcutOption, appOption}});
    if (const auto status = finishEarly(bindCommand(), parsed)) return *status;

    const std::string& gestureID = parsed.positionals[0];
    if (const auto problem = gestureProblem(gestureID)) {
        printError(*problem);
        return exitBadInput;
    }
    ActionArgument action = parseActionArgument(parsed.positionals[1], parsed);
    if (!action.action) {
        printError(action.problem);
        return exitBadInput;
    }

    // Arguments are checked before the store is opened, so a mistyped command changes no file.
    const auto store = openStore(bindingsFile(parsed), parsed.has(launchedBeforeFlag));
    const Gesture gesture(gestureID);
    const GestureBinding binding =
        GestureBinding::make(gesture, std::move(*action.action), referenceDateSeconds(systemWallClock()()));
    if (!store->save(binding)) {
        const GestureBinding* holder = store->bindingFor(gesture);
        printError(fmt::format("{} is already bound to {} ({}); unbind it first", gestureID,
                               actionPath(holder->action),
                               ActionCatalog::summary(holder->action, commandLineHost())));
        return exitRefused;
    }
    printLine(bindingLine(binding));
    return exitSuccess;
}

}  // namespace

const Command& bindCommand() {
    static const Command command{
        "bind",
        "GESTURE APPID/OPTIONID [--shortcut KEY:MODS] [--app PATH] [--file PATH] [--launched-before]",
        "Binds an enabled built-in gesture to an action and prints the new binding as one JSON object. "
        "keyboard/custom needs --shortcut KEY:MODS (a key code 0-127 and a comma list of control, "
        "option, shift, command, e.g. 17:control,command, or 17: for none); openapps/app needs --app PATH "
        "(an .app bundle, or on Linux a .desktop file). A gesture that is already bound is refused (exit "
        "status 1).",
        runBind,
    };
    return command;
}

}  // namespace ostrelle::cli
