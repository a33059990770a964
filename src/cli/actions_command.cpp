#include "actions/action_catalog.h"
#include "actions/linux_actions.h"
#include "cli/argument_parser.h"
#include "cli/command_line_host.h"
#include "cli/commands.h"
#include "cli/output.h"

namespace ostrelle::cli {
namespace {

constexpr std::string_view searchOption = "--search";

nlohmann::ordered_json optionLine(const AppActions& app, const ActionOption& option) {
    nlohmann::ordered_json line = nlohmann::ordered_json::object();
    line["app"] = app.id;
    line["option"] = option.id;
    line["label"] = option.label;
    line["keys"] = option.keys;
    // Left out when absent, as the bindings file leaves out absent members.
    if (option.note) line["note"] = *option.note;
    return line;
}

int runActions(Arguments arguments) {
    const ParsedArguments parsed =
        parseArguments(arguments, {.positionals = {}, .flags = {}, .valued = {searchOption}});
    if (const auto status = finishEarly(actionsCommand(), parsed)) return *status;

    const LinuxActions* linuxActions = linuxDesktopActions();
    const std::vector<AppActions>& shown = linuxActions ? linuxActions->catalog() : ActionCatalog::apps();
    const auto query = parsed.value(searchOption);
    const std::vector<AppActions> apps = query ? ActionCatalog::filtered(*query, shown) : shown;
    for (const AppActions& app : apps) {
        for (const ActionOption& option : app.options) printLine(optionLine(app, option));
    }
    return exitSuccess;
}

}  // namespace

const Command& actionsCommand() {
    static const Command command{
        "actions",
        "[--search QUERY]",
        "Lists the action catalog, or what QUERY finds in it (ignoring case and accents), one JSON object "
        "per line: {\"app\", \"option\", \"label\", \"keys\", \"note\"}; \"note\" is left out when the "
        "option has none. On Linux the labels, keys and notes say what the action does on the desktop "
        "named by XDG_CURRENT_DESKTOP. Bind an option as APPID/OPTIONID.",
        runActions,
    };
    return command;
}

}  // namespace ostrelle::cli
