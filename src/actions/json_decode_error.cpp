#include "actions/json_decode_error.h"

#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>

namespace ostrelle {

namespace {

std::string messageFor(JsonDecodeError::Kind kind, const std::string& key, const std::string& description) {
    std::string message(toString(kind));
    if (!key.empty()) message += " at \"" + key + "\"";
    message += ": " + description;
    return message;
}

}  // namespace

JsonDecodeError::JsonDecodeError(Kind kind, std::string key, std::string description)
    : std::runtime_error(messageFor(kind, key, description)),
      kind_(kind),
      key_(std::move(key)),
      description_(std::move(description)) {}

std::string_view toString(JsonDecodeError::Kind kind) {
    switch (kind) {
        case JsonDecodeError::Kind::keyNotFound:
            return "key not found";
        case JsonDecodeError::Kind::typeMismatch:
            return "type mismatch";
        case JsonDecodeError::Kind::dataCorrupted:
            return "data corrupted";
    }
    return "";
}

namespace json_read {

void requireObject(const nlohmann::json& value, const std::string& what) {
    if (!value.is_object()) {
        throw JsonDecodeError(JsonDecodeError::Kind::typeMismatch, "", "expected " + what + " as an object");
    }
}

const nlohmann::json& member(const nlohmann::json& object, const std::string& key) {
    const auto it = object.find(key);
    if (it == object.end()) throw JsonDecodeError(JsonDecodeError::Kind::keyNotFound, key, "missing member");
    return *it;
}

std::string string(const nlohmann::json& object, const std::string& key) {
    const nlohmann::json& value = member(object, key);
    if (!value.is_string())
        throw JsonDecodeError(JsonDecodeError::Kind::typeMismatch, key, "expected a string");
    return value.get<std::string>();
}

std::int64_t integer(const nlohmann::json& object, const std::string& key) {
    const nlohmann::json& value = member(object, key);
    if (value.is_number_integer() && !value.is_number_unsigned()) return value.get<std::int64_t>();
    if (value.is_number_unsigned()) {
        const auto unsignedValue = value.get<std::uint64_t>();
        if (unsignedValue <= static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) {
            return static_cast<std::int64_t>(unsignedValue);
        }
    } else if (value.is_number_float()) {
        const double number = value.get<double>();
        // 2^63 is the first double past the 64-bit range; the lower bound -2^63 itself still fits.
        constexpr double limit = 9223372036854775808.0;
        if (std::trunc(number) == number && number >= -limit && number < limit) {
            return static_cast<std::int64_t>(number);
        }
    }
    throw JsonDecodeError(JsonDecodeError::Kind::typeMismatch, key, "expected an integer");
}

bool isPresent(const nlohmann::json& object, const std::string& key) {
    const auto it = object.find(key);
    return it != object.end() && !it->is_null();
}

}  // namespace json_read

}  // namespace ostrelle
