#include "actions/action_ref_json.h"

#include <nlohmann/json.hpp>

#include "actions/key_shortcut_json.h"
#include "support/json_read.h"

namespace ostrelle {
namespace {

constexpr auto appIDKey = action_ref_keys::appID;
constexpr auto optionIDKey = action_ref_keys::optionID;
constexpr auto shortcutKey = action_ref_keys::shortcut;
constexpr auto appKey = action_ref_keys::app;

std::optional<KeyShortcut> tolerantShortcut(const nlohmann::json& object) {
    if (!json_read::isPresent(object, shortcutKey)) return std::nullopt;
    try {
        return keyShortcutFromJSON(object.at(shortcutKey));
    } catch (const JSONError&) {
        return std::nullopt;
    }
}

std::optional<URL> tolerantApp(const nlohmann::json& object) {
    if (!json_read::isPresent(object, appKey)) return std::nullopt;
    const nlohmann::json& value = object.at(appKey);
    if (!value.is_string()) return std::nullopt;
    return URL::parse(value.get_ref<const std::string&>());
}

}  // namespace

nlohmann::json toJSON(const ActionRef& ref) {
    nlohmann::json value{{appIDKey, ref.appID}, {optionIDKey, ref.optionID}};
    if (ref.shortcut) value[shortcutKey] = toJSON(*ref.shortcut);
    if (ref.app) value[appKey] = ref.app->absoluteString();
    return value;
}

ActionRef actionRefFromJSON(const nlohmann::json& value, const std::string& path) {
    using namespace json_read;
    requireObject(value, path);
    ActionRef ref;
    ref.appID = string(required(value, appIDKey, path), member(path, appIDKey));
    ref.optionID = string(required(value, optionIDKey, path), member(path, optionIDKey));
    ref.shortcut = tolerantShortcut(value);
    ref.app = tolerantApp(value);
    return ref;
}

void to_json(nlohmann::json& value, const ActionRef& ref) {
    value = toJSON(ref);
}

void from_json(const nlohmann::json& value, ActionRef& ref) {
    ref = actionRefFromJSON(value);
}

}  // namespace ostrelle
