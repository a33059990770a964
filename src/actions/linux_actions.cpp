#include "actions/linux_actions.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "actions/action_runner.h"
#include "support/contract.h"
#include "support/text.h"

namespace ostrelle {

extern const std::string_view linuxActionsTable;

namespace {

using Json = nlohmann::json;

constexpr std::string_view chordSeparator = ", ";
constexpr std::string_view unsupportedNotePrefix = "Not available on Linux: ";

// The runner's special apps, by the names the table uses for them.
const std::set<std::string, std::less<>>* appGroup(std::string_view name) {
    if (name == "vscode") return &ActionRunner::vsCodeIDs();
    if (name == "firefox") return &ActionRunner::firefoxIDs();
    return nullptr;
}

std::string_view desktopKey(LinuxDesktop desktop) {
    switch (desktop) {
        case LinuxDesktop::gnome:
            return "gnome";
        case LinuxDesktop::kde:
            return "kde";
        case LinuxDesktop::other:
            break;
    }
    return "other";
}

[[noreturn]] void refuse(const std::string& where, const std::string& what) {
    throw std::invalid_argument(where + ": " + what);
}

// The members one option may have, after the desktop's and the app's overrides are laid over it.
struct OptionText {
    Json keys;
    std::optional<std::string> unsupported;
    std::optional<std::string> label;
    std::optional<std::string> note;
    std::optional<std::string> keysShown;

    // An override replaces what it names; keys and unsupported replace each other.
    void overlay(const Json& layer, const std::string& where) {
        for (const auto& [name, value] : layer.items()) {
            if (name == "keys") {
                keys = value;
                unsupported.reset();
            } else if (name == "unsupported") {
                unsupported = value.get<std::string>();
                keys = nullptr;
            } else if (name == "label") {
                label = value.get<std::string>();
            } else if (name == "note") {
                note = value.get<std::string>();
            } else if (name == "keysShown") {
                keysShown = value.get<std::string>();
            } else if (name != "gnome" && name != "kde" && name != "other" && name != "in") {
                refuse(where, "unknown member \"" + name + "\"");
            }
        }
    }

    LinuxRendition rendition(const std::string& where) const {
        LinuxRendition rendition;
        rendition.unsupported = unsupported;
        if (keys.is_null()) return rendition;
        const Json list = keys.is_array() ? keys : Json::array({keys});
        for (const Json& text : list) {
            const auto chord = LinuxChord::parse(text.get<std::string>());
            if (!chord) refuse(where, "unknown keys \"" + text.get<std::string>() + "\"");
            rendition.chords.push_back(*chord);
        }
        return rendition;
    }
};

bool carriesItsOwnEffect(const ActionKind& kind) {
    return kind.is<ActionKind::CustomShortcut>() || kind.is<ActionKind::ChooseApp>();
}

std::string joinedDisplay(const std::vector<LinuxChord>& chords, LinuxDesktop desktop) {
    std::string text;
    for (const LinuxChord& chord : chords) {
        if (!text.empty()) text += chordSeparator;
        text += chord.display(desktop);
    }
    return text;
}

}  // namespace

LinuxActions::LinuxActions(LinuxDesktop desktop) : desktop_(desktop) {
    try {
        read(linuxActionsTable);
    } catch (const std::exception& error) {
        const std::string what = std::string("the built-in Linux actions table is broken: ") + error.what();
        contractViolation(what.c_str());
    }
}

LinuxActions LinuxActions::fromJSON(std::string_view json, LinuxDesktop desktop) {
    LinuxActions actions;
    actions.desktop_ = desktop;
    try {
        actions.read(json);
    } catch (const Json::exception& error) {
        throw std::invalid_argument(error.what());
    }
    return actions;
}

void LinuxActions::read(std::string_view json) {
    const Json table = Json::parse(json);
    for (const auto& [windowClass, id] : table.at("windowClasses").items()) {
        windowClasses_.emplace(asciiLowercased(windowClass), id.get<std::string>());
    }
    const Json& groupNames = table.at("groupNames");
    const Json& options = table.at("options");
    for (const auto& [key, value] : options.items()) {
        const auto slash = key.find('/');
        const ActionRef ref{
            key.substr(0, slash), slash == std::string::npos ? "" : key.substr(slash + 1), {}, {}};
        if (!ActionCatalog::lookup(ref)) refuse(key, "no such option in the catalog");
    }

    catalog_ = ActionCatalog::apps();
    for (AppActions& app : catalog_) {
        if (groupNames.contains(app.id)) app.name = groupNames.at(app.id).get<std::string>();
        for (ActionOption& option : app.options) {
            const std::string key = app.id + "/" + option.id;
            if (!options.contains(key))
                refuse(key, "missing: every option of the catalog needs a Linux meaning");
            const Json& member = options.at(key);
            OptionText text;
            text.overlay(member, key);
            const std::string desktopName(desktopKey(desktop_));
            if (member.contains(desktopName)) text.overlay(member.at(desktopName), key + " " + desktopName);

            Entry entry;
            entry.rendition = text.rendition(key);
            const bool effectInTable = !carriesItsOwnEffect(option.kind);
            if (effectInTable && entry.rendition.chords.empty() && !entry.rendition.unsupported) {
                refuse(key, "needs keys or a reason why it is unsupported");
            }
            if (!effectInTable && (!entry.rendition.chords.empty() || entry.rendition.unsupported)) {
                refuse(key, "the reference itself says what this option does");
            }
            if (member.contains("in")) {
                for (const auto& [appName, layer] : member.at("in").items()) {
                    const auto* ids = appGroup(appName);
                    if (!ids) refuse(key, "unknown app \"" + appName + "\"");
                    OptionText forApp = text;
                    forApp.overlay(layer, key + " in " + appName);
                    entry.perApp.push_back({ids, forApp.rendition(key + " in " + appName)});
                }
            }

            if (text.label) option.label = *text.label;
            option.keys = text.keysShown ? *text.keysShown : joinedDisplay(entry.rendition.chords, desktop_);
            option.note = text.note;
            if (entry.rendition.unsupported && !text.note) {
                std::string note = std::string(unsupportedNotePrefix) + *entry.rendition.unsupported + ".";
                option.note = std::move(note);
            }
            if (effectInTable) entries_.emplace(key, std::move(entry));
        }
    }
}

const ActionOption* LinuxActions::shownOption(const ActionRef& ref) const {
    for (const AppActions& app : catalog_) {
        if (app.id != ref.appID) continue;
        const auto found = std::ranges::find(app.options, ref.optionID, &ActionOption::id);
        return found == app.options.end() ? nullptr : &*found;
    }
    return nullptr;
}

const LinuxRendition* LinuxActions::rendition(const ActionRef& ref,
                                              const std::optional<std::string>& frontmostID) const {
    const auto found = entries_.find(ref.appID + "/" + ref.optionID);
    if (found == entries_.end()) return nullptr;
    if (frontmostID) {
        for (const AppRendition& special : found->second.perApp) {
            if (special.appIDs->contains(*frontmostID)) return &special.rendition;
        }
    }
    return &found->second.rendition;
}

std::optional<std::string> LinuxActions::applicationID(std::string_view windowClass) const {
    const auto found = windowClasses_.find(asciiLowercased(windowClass));
    if (found == windowClasses_.end()) return std::nullopt;
    return found->second;
}

}  // namespace ostrelle
