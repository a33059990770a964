#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "store/gesture_binding.h"

namespace ostrelle {

// Reads a bindings file the fast way. A file with many drawn gestures holds tens of thousands
// of shape points, and a general JSON tree spends most of a start on them; here a SIMD parser
// reads the file and the points go straight into the shapes.
//
// Every binding is still decoded by the full reader's own code, so the two cannot disagree on
// what a binding means. Only a plain file is read: on anything else (a syntax error, a repeated
// member, a shape with unknown or damaged members, a legacy gesture carrying a shape) this
// returns nothing, and the full reader decides with its tolerances and its error messages.
std::optional<std::vector<GestureBinding>> readPlainBindingsFile(std::string_view bytes);

}  // namespace ostrelle
