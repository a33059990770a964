#pragma once

#include <functional>
#include <istream>
#include <optional>
#include <string>

#include "recognition/recording.h"
#include "touchpad/evdev_recording.h"

namespace ostrelle::cli {

// Plays an evdev recording (evemu, evtest, libinput record) through the frame assembler, and
// mtdev first for a protocol A device, handing on its frames and clicks as a replay's events.
// A recording without a device header takes it from `deviceFile`, an evemu description. Bad
// input or a device that is no touchpad stops with "error: ..."; returns the exit status.
int forEachAssembledEvent(std::istream& input, const std::string& name, RecordingFormat format,
                          const std::optional<std::string>& deviceFile,
                          const std::function<void(const RecordingEvent&)>& handle);

}  // namespace ostrelle::cli
