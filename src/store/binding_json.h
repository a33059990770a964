#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string_view>
#include <vector>

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

// The whole file read through a JSON tree: every form and tolerance the file may hold, and the
// message that names what is wrong with it.
std::vector<GestureBinding> decodeBindingsTree(std::string_view bytes);

}  // namespace ostrelle
