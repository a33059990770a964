#pragma once

#include <optional>

#include "gestures/gesture.h"
#include "gestures/system_conflicts.h"

namespace ostrelle::cli {

// The gesture's clash with this machine's own touchpad gestures: on Linux with the running
// desktop's settings, elsewhere with the trackpad preferences this machine keeps.
std::optional<SystemConflict> hostConflict(const Gesture& gesture);

}  // namespace ostrelle::cli
