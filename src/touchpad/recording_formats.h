#pragma once

// Each evdev recording format's reader, behind `openEvdevRecording`.

#include <istream>
#include <memory>

#include "touchpad/evdev_recording.h"

namespace ostrelle {

std::unique_ptr<EvdevRecordingReader> openEvemu(std::istream& input);
std::unique_ptr<EvdevRecordingReader> openEvtest(std::istream& input);
std::unique_ptr<EvdevRecordingReader> openLibinputRecord(std::istream& input);

}  // namespace ostrelle
