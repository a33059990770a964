#include "actions/action_catalog.h"

#include <map>

#include "actions/linux_actions.h"
#include "support/contract.h"
#include "support/text.h"
#include "support/unicode_text.h"

namespace ostrelle {
namespace {

constexpr std::string_view unknownAction = "Unknown action";
constexpr std::string_view appNotFound = "App not found";
constexpr std::string_view openPrefix = "Open ";
constexpr std::string_view pressPrefix = "Press ";
constexpr std::string_view appExtension = "app";
constexpr std::string_view dotAppSuffix = ".app";

// The app grid moved to "Apps" in this macOS version.
constexpr int appsRenameMajorVersion = 26;
constexpr std::string_view appsPath = "/System/Applications/Apps.app";
constexpr std::string_view launchpadPath = "/System/Applications/Launchpad.app";

// Option ids of the per-browser and per-app groups of earlier versions, by their id today.
const std::map<std::string, std::string, std::less<>>& legacyOptionIDs() {
    static const std::map<std::string, std::string, std::less<>> table{
        {"newtab", "newtab"}, {"close", "close"}, {"next", "right"}, {"prev", "left"}, {"reopen", "reopen"},
    };
    return table;
}

bool hasSuffix(std::string_view text, std::string_view suffix) {
    return text.size() >= suffix.size() && text.substr(text.size() - suffix.size()) == suffix;
}

// The option's label as this system shows it.
const std::string& shownLabel(const ActionCatalog::Entry& entry, const ActionRef& ref,
                              const ActionHost& host) {
    if (host.linuxActions) {
        if (const ActionOption* shown = host.linuxActions->shownOption(ref)) return shown->label;
    }
    return entry.option->label;
}

// A stored shortcut as this system writes shortcuts.
std::string shortcutText(const KeyShortcut& shortcut, const ActionHost& host) {
    if (host.linuxActions) return linuxDisplay(shortcut, host.keyboardLayout, host.linuxActions->desktop());
    return shortcut.display(host.keyboardLayout);
}

}  // namespace

std::string ActionCatalog::appGridPathFor(std::optional<int> macOSMajorVersion) {
    const bool renamed = macOSMajorVersion && *macOSMajorVersion >= appsRenameMajorVersion;
    return std::string(renamed ? appsPath : launchpadPath);
}

std::optional<ActionCatalog::Entry> ActionCatalog::lookup(const ActionRef& ref) {
    for (const AppActions& app : apps()) {
        if (app.id != ref.appID) continue;
        for (const ActionOption& option : app.options) {
            if (option.id == ref.optionID) return Entry{&app, &option};
        }
        return std::nullopt;
    }
    return std::nullopt;
}

std::optional<ActionRef> ActionCatalog::migrated(const ActionRef& ref) {
    if (lookup(ref)) return ref;
    const auto& map = legacyOptionIDs();
    const auto mapped = map.find(ref.optionID);
    if (mapped == map.end()) return std::nullopt;
    if (ref.appID == "safari" || ref.appID == "chrome") return ActionRef{"browsers", mapped->second, {}, {}};
    if (ref.appID == "finder" || ref.appID == "terminal") {
        // Tabbed apps have no "reopen".
        if (mapped->second == "reopen") return std::nullopt;
        return ActionRef{"tabs", mapped->second, {}, {}};
    }
    return std::nullopt;
}

std::string ActionCatalog::summary(const ActionRef& ref, const ActionHost& host) {
    const auto entry = lookup(ref);
    if (!entry) return std::string(unknownAction);
    const ActionKind& kind = entry->option->kind;
    if (kind.is<ActionKind::ChooseApp>() && ref.app) {
        if (auto name = appName(*ref.app, host.appFiles)) return std::string(openPrefix) + *name;
    }
    if (kind.is<ActionKind::CustomShortcut>() && ref.shortcut) {
        return std::string(pressPrefix) + shortcutText(*ref.shortcut, host);
    }
    return shownLabel(*entry, ref, host);
}

std::string ActionCatalog::pill(const ActionRef& ref, const ActionHost& host) {
    const auto entry = lookup(ref);
    if (!entry) return std::string(unknownAction);
    const ActionKind& kind = entry->option->kind;
    if (kind.is<ActionKind::ChooseApp>() && ref.app)
        return appName(*ref.app, host.appFiles).value_or(std::string(appNotFound));
    if (kind.is<ActionKind::CustomShortcut>() && ref.shortcut) {
        return shortcutText(*ref.shortcut, host);
    }
    return shownLabel(*entry, ref, host);
}

std::optional<std::string> ActionCatalog::appName(const URL& url, const AppFiles* files) {
    // A Linux application is a desktop entry file, named by the entry itself.
    constexpr std::string_view desktopExtension = "desktop";
    if (!files || !url.isFileURL()) return std::nullopt;
    const std::string path = url.path();
    if (url.pathExtension() == desktopExtension) {
        auto entry = files->desktopEntry(path);
        if (!entry) return std::nullopt;
        return std::move(entry->name);
    }
    if (url.pathExtension() != appExtension) return std::nullopt;
    if (!files->isDirectory(path)) return std::nullopt;
    std::string name = files->displayName(path);
    if (hasSuffix(name, dotAppSuffix)) name.resize(name.size() - dotAppSuffix.size());
    return name;
}

std::vector<AppActions> ActionCatalog::filtered(std::string_view query) {
    return filtered(query, apps());
}

std::vector<AppActions> ActionCatalog::filtered(std::string_view query,
                                                const std::vector<AppActions>& shown) {
    // Only spaces and tabs are trimmed: a typed line end is part of the query.
    const std::string needle = trimSpacesAndTabs(query);
    if (needle.empty()) return shown;
    const auto matches = [&](const std::string& text) { return looselyContains(text, needle); };
    std::vector<AppActions> result;
    for (const AppActions& app : shown) {
        if (matches(app.name)) {
            result.push_back(app);
            continue;
        }
        AppActions narrowed{app.id, app.name, app.symbol, {}};
        for (const ActionOption& option : app.options) {
            if (matches(option.label) || matches(option.keys)) narrowed.options.push_back(option);
        }
        if (!narrowed.options.empty()) result.push_back(std::move(narrowed));
    }
    return result;
}

}  // namespace ostrelle
