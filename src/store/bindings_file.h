#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "store/gesture_binding.h"

namespace ostrelle {

// The bindings file is read whole: one bad binding makes the whole file unreadable.
class BindingsFileError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// The file's bytes: a pretty-printed JSON array of binding objects with sorted keys.
std::string encodeBindingsFile(const std::vector<GestureBinding>& bindings);

// Throws BindingsFileError naming the first problem and where it is ("binding 3: action: ...").
std::vector<GestureBinding> decodeBindingsFile(std::string_view bytes);

}  // namespace ostrelle
