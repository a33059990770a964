#pragma once

#include <functional>
#include <istream>
#include <string>

#include "recognition/recording.h"

namespace ostrelle::cli {

// Hands every event of a recording to `handle`, in file order. A bad line stops the loop with
// "error: NAME:LINE: problem" on standard error; returns the exit status.
int forEachRecordedEvent(std::istream& input, const std::string& name,
                         const std::function<void(const RecordingEvent&)>& handle);

}  // namespace ostrelle::cli
