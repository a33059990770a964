#include "cli/argument_parser.h"

#include <fmt/format.h>

#include <algorithm>

namespace ostrelle::cli {
namespace {

bool listed(const std::vector<std::string_view>& names, std::string_view name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

// A lone "-" is a value (standard input, by convention), not an option.
bool looksLikeOption(std::string_view argument) {
    return argument.size() > 1 && argument.starts_with('-');
}

}  // namespace

std::optional<std::string> ParsedArguments::value(std::string_view option) const {
    const auto it = values.find(option);
    if (it == values.end()) return std::nullopt;
    return it->second;
}

ParsedArguments parseArguments(Arguments arguments, const ArgumentRules& rules) {
    ParsedArguments parsed;
    for (std::size_t i = 0; i < arguments.size() && !parsed.problem; ++i) {
        const std::string& argument = arguments[i];
        if (isHelpOption(argument)) {
            parsed.help = true;
            return parsed;
        }
        if (listed(rules.flags, argument)) {
            parsed.flags.insert(argument);
        } else if (listed(rules.valued, argument)) {
            if (i + 1 == arguments.size()) {
                parsed.problem = fmt::format("{} needs a value", argument);
            } else if (parsed.values.contains(argument)) {
                parsed.problem = fmt::format("{} given twice", argument);
            } else {
                parsed.values[argument] = arguments[++i];
            }
        } else if (looksLikeOption(argument)) {
            parsed.problem = fmt::format("unknown option {}", argument);
        } else if (parsed.positionals.size() == rules.positionals.size()) {
            parsed.problem = fmt::format("unexpected argument \"{}\"", argument);
        } else {
            parsed.positionals.push_back(argument);
        }
    }
    if (!parsed.problem && parsed.positionals.size() < rules.positionals.size()) {
        parsed.problem = fmt::format("missing {}", rules.positionals[parsed.positionals.size()]);
    }
    return parsed;
}

std::optional<int> finishEarly(const Command& command, const ParsedArguments& parsed) {
    if (parsed.help) {
        printCommandUsage(command);
        return exitSuccess;
    }
    if (parsed.problem) return usageError(command, *parsed.problem);
    return std::nullopt;
}

}  // namespace ostrelle::cli
