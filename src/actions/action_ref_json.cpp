#include "actions/action_ref_json.h"

#include <nlohmann/json.hpp>

#include "actions/key_shortcut_json.h"
#include "support/json_read.h"

namespace ostrelle {
namespace {

std::optional<KeyShortcut> tolerantShortcut(const nlohmann::json& object) {
    if (!json_read::isPresent(object, action_ref_keys::shortcut)) return std::nullopt;
    try {
        return keyShortcutFromJSON(object.at(action_ref_keys::shortcut));
    } catch (const JSONError&) {
        return std::nullopt;
    }
}

std::optional<URL> tolerantApp(const nlohmann::json& object) {
    if (!json_read::isPresent(object, action_ref_keys::app)) return std::nullopt;
    const nlohmann::json& value = object.at(action_ref_keys::app);
    if (!value.is_string()) return std::nullopt;
    return URL::parse(value.get_ref<const std::string&>());
}

}  // namespace

nlohmann::json toJSON(const ActionRef& ref) {
    nlohmann::json value{{action_ref_keys::appID, ref.appID}, {action_ref_keys::optionID, ref.optionID}};
    if (ref.shortcut) value[action_ref_keys::shortcut] = toJSON(*ref.shortcut);
    if (ref.app) value[action_ref_keys::app] = ref.app->absoluteString();
    return value;
}

ActionRef actionRefFromJSON(const nlohmann::json& value, const std::string& path) {
    using namespace json_read;
    requireObject(value, path);
    ActionRef ref;
    ref.appID = string(required(value, action_ref_keys::appID, path), member(path, action_ref_keys::appID));
    ref.optionID =
        string(required(value, action_ref_keys::optionID, path), member(path, action_ref_keys::optionID));
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
