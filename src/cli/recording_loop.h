#pragma once

#include <functional>
#include <istream>
#include <optional>
#include <string>

#include "recognition/recording.h"

namespace ostrelle::cli {

// Hands every event of a recording to `handle`, in file order. The format comes from the
// content: the program's own JSON lines, or an evdev recording (evemu, evtest, libinput record)
// played through the frame assembler; `deviceFile` describes the device of an evdev recording
// that does not. A bad line stops the loop with "error: NAME:LINE: problem" on standard error;
// returns the exit status.
int forEachRecordedEvent(std::istream& input, const std::string& name,
                         const std::optional<std::string>& deviceFile,
                         const std::function<void(const RecordingEvent&)>& handle);

}  // namespace ostrelle::cli
