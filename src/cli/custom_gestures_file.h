#pragma once

#include <string>
#include <vector>

#include "gestures/gesture.h"

namespace ostrelle::cli {

// Reads a JSON array of custom gestures ({"id": ..., "custom": {shape}}) for the recognizer.
// Unlike the bindings file, which drops a damaged shape and keeps the binding, a gesture here is
// only there for its shape, so any fault is an error. Throws std::runtime_error with a message
// naming the file and, for a bad value, its JSON path.
std::vector<Gesture> loadCustomGestures(const std::string& file);

}  // namespace ostrelle::cli
