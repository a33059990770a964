#pragma once

#include <optional>
#include <string>
#include <vector>

#include "recognition/recording.h"

namespace ostrelle::cli {

// The events of a recording in any format replay reads, read whole so that a bad line is refused
// before the service starts rather than halfway through a demo; nothing, after printing why,
// when it cannot be read.
std::optional<std::vector<RecordingEvent>> readRecording(const std::string& file);

}  // namespace ostrelle::cli
