#include "store/binding_json.h"

#include <algorithm>
#include <cctype>
#include <nlohmann/json.hpp>
#include <string>

#include "actions/action_ref_json.h"
#include "gestures/gesture_json.h"
#include "store/bindings_file.h"
#include "support/uuid.h"

namespace ostrelle {
namespace {

using nlohmann::json;

const json& required(const json& object, const char* key) {
    const auto it = object.find(key);
    if (it == object.end()) throw BindingsFileError(std::string("missing \"") + key + "\"");
    return *it;
}

// UUIDs are read in either case and kept in the canonical upper-case form.
std::string decodeID(const json& value) {
    if (!value.is_string()) throw BindingsFileError("\"id\" is not a string");
    std::string id = value.get<std::string>();
    std::transform(id.begin(), id.end(), id.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    if (!isCanonicalUUID(id)) throw BindingsFileError("\"id\" is not a UUID: " + value.get<std::string>());
    return id;
}

}  // namespace

GestureBinding decodeBinding(const json& value) {
    if (!value.is_object()) throw BindingsFileError("not an object");
    GestureBinding binding;
    binding.id = decodeID(required(value, binding_keys::id));
    try {
        binding.gesture = decodeGesture(required(value, binding_keys::gesture));
    } catch (const std::exception& error) {
        throw BindingsFileError(std::string(error.what()));
    }
    try {
        binding.action = actionRefFromJSON(required(value, binding_keys::action));
    } catch (const JSONError& error) {
        throw BindingsFileError(error.what());
    }
    const json& created = required(value, binding_keys::createdAt);
    if (!created.is_number()) throw BindingsFileError("\"createdAt\" is not a number");
    binding.createdAt = created.get<double>();
    return binding;
}

}  // namespace ostrelle
