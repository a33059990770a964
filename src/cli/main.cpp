#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "cli/command.h"
#include "cli/commands.h"
#include "cli/output.h"
#include "cli/termination_signals.h"

namespace ostrelle::cli {
namespace {

constexpr std::string_view program = "ostrelle-cli";

// "gestures" or "replay FILE [--trace] ...": a command and its arguments, if it takes any.
std::string invocation(const Command& command) {
    if (command.synopsis.empty()) return std::string(command.name);
    return fmt::format("{} {}", command.name, command.synopsis);
}

void printUsage(std::FILE* stream) {
    std::string text = fmt::format("usage: {} COMMAND [ARGUMENTS]\n\ncommands:\n", program);
    for (const Command& command : commands()) {
        text += fmt::format("  {}\n      {}\n", invocation(command), command.summary);
    }
    text += fmt::format("\nRun \"{} COMMAND --help\" for one command.\n", program);
    std::fputs(text.c_str(), stream);
}

const Command* findCommand(std::string_view name) {
    const auto all = commands();
    const auto it = std::find_if(all.begin(), all.end(), [&](const Command& c) { return c.name == name; });
    return it == all.end() ? nullptr : &*it;
}

int run(const std::vector<std::string>& arguments) {
    if (arguments.empty()) {
        printError("no command given");
        printUsage(stderr);
        return exitBadInput;
    }
    const std::string& name = arguments.front();
    if (isHelpOption(name) || name == "help") {
        printUsage(stdout);
        return exitSuccess;
    }
    const Command* command = findCommand(name);
    if (!command) {
        printError(fmt::format("unknown command \"{}\"", name));
        printUsage(stderr);
        return exitBadInput;
    }
    return command->run(Arguments(arguments).subspan(1));
}

}  // namespace

bool isHelpOption(std::string_view argument) {
    return argument == "--help" || argument == "-h";
}

void printCommandUsage(const Command& command) {
    fmt::print(stdout, "usage: {} {}\n    {}\n", program, invocation(command), command.summary);
}

int usageError(const Command& command, std::string_view problem) {
    printError(problem);
    fmt::print(stderr, "usage: {} {}\n", program, invocation(command));
    return exitBadInput;
}

}  // namespace ostrelle::cli

int main(int argc, char** argv) {
    std::vector<std::string> arguments;
    for (int i = 1; i < argc; ++i) arguments.emplace_back(argv[i]);
    if (arguments.empty() || !ostrelle::cli::handlesTerminationSignals(arguments.front()))
        ostrelle::cli::flushLogOnTerminationSignals();
    return ostrelle::cli::run(arguments);
}
