#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>

#include "actions/key_shortcut_json.h"
#include "cli/commands.h"
#include "cli/output.h"
#include "engine/gesture_engine.h"
#include "platform/linux/settings_file.h"

namespace ostrelle::cli {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::string_view deleteFlag = "--delete";

enum class Kind { boolean, shortcut };
struct Key {
    std::string_view name;
    Kind kind;
};
constexpr std::array knownKeys{
    Key{settings_keys::listening, Kind::boolean},
    Key{settings_keys::toggleShortcut, Kind::shortcut},
    Key{settings_keys::hapticFeedback, Kind::boolean},
    Key{settings_keys::launchedBefore, Kind::boolean},
};

const Key* findKey(std::string_view name) {
    const auto found =
        std::find_if(knownKeys.begin(), knownKeys.end(), [&](const Key& key) { return key.name == name; });
    return found == knownKeys.end() ? nullptr : &*found;
}

std::string keyList() {
    std::string list;
    for (const Key& key : knownKeys) list += (list.empty() ? "" : ", ") + std::string(key.name);
    return list;
}

// The value as stored, or why the text does not fit the key.
std::variant<Json, std::string> parseValue(const Key& key, const std::string& text) {
    switch (key.kind) {
        case Kind::boolean:
            if (text == "true" || text == "false") return Json(text == "true");
            return fmt::format("{} takes true or false, not \"{}\"", key.name, text);
        case Kind::shortcut: {
            const auto value = Json::parse(text, nullptr, false);
            if (value.is_discarded())
                return fmt::format("{} takes JSON, such as {}", key.name,
                                   R"({"key": 17, "modifiers": ["control", "option"]})");
            try {
                const KeyShortcut shortcut =
                    keyShortcutFromJSON(nlohmann::json::parse(text), std::string(key.name));
                if (!shortcut.isGlobal()) return std::string(GestureEngine::nonGlobalShortcutError);
            } catch (const JSONError& error) {
                return std::string(error.what());
            }
            return value;
        }
    }
    return std::string("unknown kind of setting");
}

int runSettings(Arguments arguments) {
    std::vector<std::string> words;
    bool remove = false;
    for (const std::string& argument : arguments) {
        if (isHelpOption(argument)) {
            printCommandUsage(settingsCommand());
            return exitSuccess;
        }
        if (argument == deleteFlag) {
            remove = true;
        } else if (argument.starts_with("--")) {
            return usageError(settingsCommand(), fmt::format("unknown option {}", argument));
        } else {
            words.push_back(argument);
        }
    }
    if (words.size() > 2 || (remove && words.size() != 1))
        return usageError(settingsCommand(), remove ? "--delete takes one KEY" : "too many arguments");

    SettingsFile settings(defaultSettingsPath(processEnvironment()));
    if (words.empty()) {
        printLine(settings.values());
        return exitSuccess;
    }
    const Key* key = findKey(words[0]);
    if (!key)
        return usageError(settingsCommand(),
                          fmt::format("unknown setting \"{}\" (known: {})", words[0], keyList()));
    if (words.size() == 1 && !remove) {
        const auto found = settings.values().find(words[0]);
        if (found == settings.values().end()) {
            printError(fmt::format("{} is not set", words[0]));
            return exitRefused;
        }
        printLine(*found);
        return exitSuccess;
    }
    std::optional<Json> value;
    if (!remove) {
        auto parsed = parseValue(*key, words[1]);
        if (const auto* problem = std::get_if<std::string>(&parsed)) {
            printError(*problem);
            return exitBadInput;
        }
        value = std::get<Json>(std::move(parsed));
    }
    if (const auto failure = settings.update(words[0], value)) {
        printError(fmt::format("cannot save {}: {}", settings.path().string(), *failure));
        return exitRefused;
    }
    return exitSuccess;
}

}  // namespace

const Command& settingsCommand() {
    static const Command command{
        "settings",
        "[KEY [VALUE]] | --delete KEY",
        "Shows or changes the settings file that the service and the application share: all settings as "
        "one JSON object, one value, or sets one (true or false; JSON for toggleShortcut, such as "
        "{\"key\": 17, \"modifiers\": [\"control\", \"option\"]}). A running service picks a change up "
        "by itself. Keys: listening, toggleShortcut, hapticFeedback, SUHasLaunchedBefore.",
        runSettings,
    };
    return command;
}

}  // namespace ostrelle::cli
