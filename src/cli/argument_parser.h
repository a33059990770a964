#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "cli/command.h"

namespace ostrelle::cli {

// What a subcommand accepts: named positional arguments (all required), flags, and options
// that take one value ("--file PATH").
struct ArgumentRules {
    std::vector<std::string_view> positionals;  // their names, as usage texts show them
    std::vector<std::string_view> flags;
    std::vector<std::string_view> valued;
};

struct ParsedArguments {
    std::vector<std::string> positionals;
    std::set<std::string, std::less<>> flags;
    std::map<std::string, std::string, std::less<>> values;
    bool help = false;
    std::optional<std::string> problem;  // the first thing wrong with the arguments

    bool has(std::string_view flag) const { return flags.contains(flag); }
    std::optional<std::string> value(std::string_view option) const;
};

ParsedArguments parseArguments(Arguments arguments, const ArgumentRules& rules);

// The status to exit with at once when the arguments ask for the usage text or are wrong.
std::optional<int> finishEarly(const Command& command, const ParsedArguments& parsed);

}  // namespace ostrelle::cli
