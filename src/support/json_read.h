#pragma once

#include <cmath>
#include <cstdint>
#include <limits>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "support/json_error.h"

namespace ostrelle::json_read {

// Small checked readers for hand-written decoders: each either returns the value or throws a
// JSONError naming the path, so that decoders never fall into nlohmann's own type errors.

inline std::string member(const std::string& path, std::string_view key) {
    return path + "." + std::string(key);
}
inline std::string element(const std::string& path, std::size_t index) {
    return path + "[" + std::to_string(index) + "]";
}

inline void requireObject(const nlohmann::json& value, const std::string& path) {
    if (!value.is_object()) throw JSONError(path, "expected an object");
}

// The member under key of an object; a missing member is the object's error, named by its key.
inline const nlohmann::json& required(const nlohmann::json& object, std::string_view key,
                                      const std::string& path) {
    const auto it = object.find(key);
    if (it == object.end()) throw JSONError(path, "missing \"" + std::string(key) + "\"");
    return *it;
}

inline const std::string& string(const nlohmann::json& value, const std::string& path) {
    if (!value.is_string()) throw JSONError(path, "expected a string");
    return value.get_ref<const std::string&>();
}

inline std::int64_t int64(const nlohmann::json& value, const std::string& path) {
    if (value.is_number_unsigned()) {
        if (value.get<std::uint64_t>() >
            static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) {
            throw JSONError(path, "integer out of range");
        }
        return static_cast<std::int64_t>(value.get<std::uint64_t>());
    }
    if (value.is_number_integer()) return value.get<std::int64_t>();
    throw JSONError(path, "expected an integer");
}

inline int integer(const nlohmann::json& value, const std::string& path) {
    const std::int64_t wide = int64(value, path);
    if (wide < std::numeric_limits<int>::min() || wide > std::numeric_limits<int>::max())
        throw JSONError(path, "integer out of range");
    return static_cast<int>(wide);
}

// Any JSON number. A literal too large for a double (1e999) parses as infinity and is refused here.
inline double finiteNumber(const nlohmann::json& value, const std::string& path) {
    if (!value.is_number()) throw JSONError(path, "expected a number");
    const double number = value.get<double>();
    if (!std::isfinite(number)) throw JSONError(path, "number out of range");
    return number;
}

}  // namespace ostrelle::json_read
