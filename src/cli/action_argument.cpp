#include "cli/action_argument.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <filesystem>
#include <vector>

#include "actions/action_catalog.h"
#include "cli/binding_line.h"
#include "cli/catalog_ids.h"
#include "cli/closest_ids.h"
#include "cli/command_line_host.h"
#include "cli/shortcut_argument.h"

namespace ostrelle::cli {
namespace {

ActionArgument failure(std::string problem) {
    return {std::nullopt, std::move(problem)};
}

// The options of one kind, named as the command line names them, for messages.
template <class Kind>
std::string optionsOfKind() {
    std::vector<std::string> paths;
    for (const AppActions& app : ActionCatalog::apps()) {
        for (const ActionOption& option : app.options) {
            if (option.kind.is<Kind>()) paths.push_back(actionPath({app.id, option.id, {}, {}}));
        }
    }
    return fmt::format("{}", fmt::join(paths, ", "));
}

// An application is stored as the file URL of its absolute path; bundles are folders, so their
// URLs end in a slash, and desktop entries are files.
std::optional<URL> applicationURL(const std::string& text) {
    if (text.empty()) return std::nullopt;  // would otherwise name the current folder
    std::error_code failed;
    std::filesystem::path path = std::filesystem::absolute(text, failed).lexically_normal();
    if (failed || !std::filesystem::exists(path, failed)) return std::nullopt;
    if (path.filename().empty()) path = path.parent_path();
    return URL::fileURL(path.string(), std::filesystem::is_directory(path, failed));
}

}  // namespace

ActionArgument parseActionArgument(const std::string& text, const ParsedArguments& parsed) {
    const auto slash = text.find('/');
    std::optional<ActionCatalog::Entry> entry;
    ActionRef action;
    if (slash != std::string::npos) {
        action = {text.substr(0, slash), text.substr(slash + 1), {}, {}};
        entry = ActionCatalog::lookup(action);
    }
    if (!entry) return failure(unknownIDMessage("action", text, actionPaths()));

    const ActionKind& kind = entry->option->kind;
    const auto shortcutText = parsed.value(shortcutOption);
    if (kind.is<ActionKind::CustomShortcut>()) {
        if (!shortcutText) return failure(fmt::format("{} needs --shortcut KEY:MODS", text));
        ShortcutArgument shortcut = parseShortcutArgument(*shortcutText);
        if (!shortcut.shortcut) return failure(std::move(shortcut.problem));
        action.shortcut = shortcut.shortcut;
    } else if (shortcutText) {
        return failure(fmt::format("--shortcut is only for {}, not {}",
                                   optionsOfKind<ActionKind::CustomShortcut>(), text));
    }

    const auto appText = parsed.value(appOption);
    if (kind.is<ActionKind::ChooseApp>()) {
        if (!appText) return failure(fmt::format("{} needs --app PATH", text));
        action.app = applicationURL(*appText);
        if (!action.app) return failure(fmt::format("--app: no such file or folder: {}", *appText));
        // Bound, anything else would only ever show "Open an app" and open nothing.
        if (!ActionCatalog::appName(*action.app, commandLineHost().appFiles)) {
            return failure(fmt::format("--app: not an {}: {}", applicationKinds(), *appText));
        }
    } else if (appText) {
        return failure(
            fmt::format("--app is only for {}, not {}", optionsOfKind<ActionKind::ChooseApp>(), text));
    }
    return {std::move(action), {}};
}

}  // namespace ostrelle::cli
