#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <stdexcept>
#include <string>
#include <string_view>

namespace ostrelle {

// Why a stored value could not be read. The bindings file is read whole, so one of these thrown
// from any value makes the whole file unreadable; the reader catches it at the file's edge.
class JsonDecodeError : public std::runtime_error {
  public:
    enum class Kind { keyNotFound, typeMismatch, dataCorrupted };

    JsonDecodeError(Kind kind, std::string key, std::string description);

    Kind kind() const { return kind_; }
    // The member the error is about; empty for the value itself.
    const std::string& key() const { return key_; }
    const std::string& description() const { return description_; }

  private:
    Kind kind_;
    std::string key_;
    std::string description_;
};

std::string_view toString(JsonDecodeError::Kind kind);

// Reading helpers shared by the value types' decoders; each throws JsonDecodeError.
namespace json_read {

void requireObject(const nlohmann::json& value, const std::string& what);
const nlohmann::json& member(const nlohmann::json& object, const std::string& key);
std::string string(const nlohmann::json& object, const std::string& key);
// A JSON number with an integral value that fits 64 bits ("17" and "17.0", not "17.5").
std::int64_t integer(const nlohmann::json& object, const std::string& key);
// Whether the member is there and not null: optional members read as absent otherwise.
bool isPresent(const nlohmann::json& object, const std::string& key);

}  // namespace json_read

}  // namespace ostrelle
