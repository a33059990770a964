#pragma once

#include <optional>
#include <string>

#include "actions/action_ref.h"
#include "cli/argument_parser.h"

namespace ostrelle::cli {

constexpr std::string_view shortcutOption = "--shortcut";
constexpr std::string_view appOption = "--app";

// The action a `bind` asks for: "APPID/OPTIONID" plus the --shortcut or --app its kind needs.
struct ActionArgument {
    std::optional<ActionRef> action;
    std::string problem;  // why the arguments name no bindable action, when they do not
};

// Checks the option against the catalog and the extra value against the option's kind: a custom
// shortcut needs --shortcut, a chosen app needs --app, and no other option takes either.
ActionArgument parseActionArgument(const std::string& text, const ParsedArguments& parsed);

}  // namespace ostrelle::cli
