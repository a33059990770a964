#include <fmt/format.h>

#include <iostream>
#include <nlohmann/json.hpp>
#include <variant>

#include "cli/argument_parser.h"
#include "cli/commands.h"
#include "cli/output.h"
#include "platform/linux/instance_socket.h"

namespace ostrelle::cli {
namespace {

constexpr std::string_view notRunning = "Ostrelle is not running; start it with \"ostrelle-cli run\"";

// Sends one request to the running instance and prints its reply, a JSON object, as one line.
int ask(const Command& command, Arguments arguments, std::string_view request) {
    const ParsedArguments parsed = parseArguments(arguments, {});
    if (const auto status = finishEarly(command, parsed)) return *status;
    const auto folder = instanceFolder(processEnvironment());
    if (const auto* problem = std::get_if<std::string>(&folder)) {
        printError(*problem);
        return exitRefused;
    }
    const auto reply = askInstance(std::get<std::filesystem::path>(folder), request);
    if (!reply) {
        printError(notRunning);
        return exitRefused;
    }
    const auto value = nlohmann::ordered_json::parse(*reply, nullptr, false);
    if (!value.is_object()) {
        printError(fmt::format("the running instance answered \"{}\"", *reply));
        return exitRefused;
    }
    printLine(value);
    return exitSuccess;
}

}  // namespace

const Command& toggleCommand() {
    static const Command command{
        "toggle",
        "",
        "Turns gestures off in the running service, or on again, and prints the new state as "
        "{\"listening\": true|false}. Bind it to a key in the desktop's own shortcut settings.",
        [](Arguments arguments) { return ask(toggleCommand(), arguments, "toggle"); },
    };
    return command;
}

const Command& statusCommand() {
    static const Command command{
        "status",
        "",
        "Prints the running service's state as one JSON object: listening, sourceError, events, "
        "touchpads (how many it reads; absent while it plays a recording), bindings, keysError (why "
        "actions can't send keys), toggleShortcutError, haptics (whether this system has any) and pid.",
        [](Arguments arguments) { return ask(statusCommand(), arguments, "status"); },
    };
    return command;
}

}  // namespace ostrelle::cli
