#pragma once

#include <string>
#include <vector>

#include "performer.h"

namespace ostrelle::examples {

// Times and coordinates keep four decimals in the files, so they read well; a tenth of a
// millisecond and a ten-thousandth of the pad are finer than any trackpad reports.
double fourDecimals(double value);

// One line of a recording, without the line end.
std::string lineText(const RecordingLine& line);

// A whole example recording: the description, one "# expect:" line per gesture, then the takes.
std::string recordingText(const std::string& description, const std::vector<std::string>& expected,
                          const std::vector<RecordingLine>& lines);

}  // namespace ostrelle::examples
