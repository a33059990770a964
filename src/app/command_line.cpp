#include "app/command_line.h"

namespace ostrelle::app {

std::variant<Invocation, std::string> parseInvocation(std::span<const std::string> arguments) {
    Invocation invocation;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        const auto value = [&]() -> std::optional<std::string> {
            if (i + 1 >= arguments.size()) return std::nullopt;
            return arguments[++i];
        };
        if (argument == "--toggle") {
            invocation.request = Invocation::Request::toggle;
        } else if (argument == "--open") {
            invocation.request = Invocation::Request::open;
            invocation.options.openWindow = true;
        } else if (argument == "--help" || argument == "-h") {
            invocation.request = Invocation::Request::help;
        } else if (argument == "--version") {
            invocation.request = Invocation::Request::version;
        } else if (argument == "--dry-run") {
            invocation.options.dryRun = true;
        } else if (argument == "--replay" || argument == "--bindings") {
            const auto given = value();
            if (!given) return argument + " needs a file";
            if (argument == "--replay")
                invocation.replayFile = *given;
            else
                invocation.options.bindings = *given;
        } else {
            return "unknown option " + argument;
        }
    }
    return invocation;
}

}  // namespace ostrelle::app
