#pragma once

#include <fstream>
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
// Opens a recording file for reading; nothing, after printing why ("is a directory", "cannot
// open ..."), when it cannot be.
std::optional<std::ifstream> openRecordingFile(const std::string& file);

int forEachRecordedEvent(std::istream& input, const std::string& name,
                         const std::optional<std::string>& deviceFile,
                         const std::function<void(const RecordingEvent&)>& handle);

}  // namespace ostrelle::cli
