#pragma once

#include <nlohmann/json_fwd.hpp>

#include "store/gesture_binding.h"

namespace ostrelle {

// Member names of a stored binding: {"id", "gesture", "action", "createdAt"}.
namespace binding_keys {
inline constexpr const char* id = "id";
inline constexpr const char* gesture = "gesture";
inline constexpr const char* action = "action";
inline constexpr const char* createdAt = "createdAt";
}  // namespace binding_keys

// One binding of the file. Throws BindingsFileError naming the problem ("action: ...").
GestureBinding decodeBinding(const nlohmann::json& value);

}  // namespace ostrelle
