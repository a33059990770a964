#pragma once

#include <string>
#include <vector>

#include "performer.h"

namespace ostrelle::examples {

// A number with at most four decimals and no trailing zeros, so the files read well.
std::string shortNumber(double value);

// One line of a recording, without the line end.
std::string lineText(const RecordingLine& line);

// A whole example recording: the description, one "# expect:" line per gesture, then the takes.
std::string recordingText(const std::string& description, const std::vector<std::string>& expected,
                          const std::vector<RecordingLine>& lines);

}  // namespace ostrelle::examples
