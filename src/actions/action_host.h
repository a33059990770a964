#pragma once

#include <optional>

#include "actions/app_files.h"
#include "actions/keyboard_layout.h"

namespace ostrelle {

class LinuxActions;

// What the actions' texts and the runner need to know about the machine they run on, handed
// down by whoever builds them (the application, the service, the command line). Each part may
// be missing; the texts then fall back as their comments say. The pointees outlive every user.
struct ActionHost {
    const KeyboardLayout* keyboardLayout = nullptr;  // names keys the fixed tables don't; else "Key N"
    const AppFiles* appFiles = nullptr;              // finds and names applications; else none is found
    std::optional<int> macOSMajorVersion;            // where the app grid lives; unset on other systems
    const LinuxActions* linuxActions = nullptr;      // on Linux desktops: their chords and texts
};

}  // namespace ostrelle
