#pragma once

#include <span>
#include <string>
#include <string_view>

namespace ostrelle::cli {

// Exit statuses. Bad usage and bad input share one status: either way the caller must fix
// what it passed, and scripts need only one test.
constexpr int exitSuccess = 0;
// The input was well formed but the request cannot be carried out (a gesture already bound,
// or not bound at all); what the caller passed is not the fault.
constexpr int exitRefused = 1;
constexpr int exitBadInput = 2;

using Arguments = std::span<const std::string>;

// One subcommand: `ostrelle-cli NAME ARGUMENTS...`.
struct Command {
    std::string_view name;
    std::string_view synopsis;  // the arguments, as shown in usage texts
    std::string_view summary;   // one line on what it does
    int (*run)(Arguments arguments);
};

// The subcommands, in the order the usage text lists them.
std::span<const Command> commands();

// Writes the usage of one subcommand to standard output.
void printCommandUsage(const Command& command);
// Reports bad usage of one subcommand on standard error and returns the status to exit with.
int usageError(const Command& command, std::string_view problem);

// True for "--help" and "-h".
bool isHelpOption(std::string_view argument);

}  // namespace ostrelle::cli
