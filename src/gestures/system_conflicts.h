#pragma once

#include <optional>
#include <string>
#include <vector>

#include "gestures/gesture.h"
#include "gestures/trackpad_preferences.h"

namespace ostrelle {

// A system settings pane the user can open to remove a clash: on macOS by its URL, on a Linux
// desktop by running its settings program.
struct SettingsPane {
    std::string name;
    std::string url;                   // empty on Linux
    std::vector<std::string> command;  // the program and its arguments that open the page; empty on macOS

    static SettingsPane trackpad();
    static SettingsPane accessibility();

    friend bool operator==(const SettingsPane&, const SettingsPane&) = default;
};

// A clash between a gesture and the operating system's own use of the trackpad.
struct SystemConflict {
    std::string text;
    std::optional<SettingsPane> settings;  // absent when no setting could remove the clash

    friend bool operator==(const SystemConflict&, const SystemConflict&) = default;
};

// Whether the gesture collides with an enabled system gesture, or moves the pointer while it is
// made. Reads the preferences afresh on every call and changes nothing.
std::optional<SystemConflict> systemConflict(const Gesture& gesture, const TrackpadPreferences& preferences);

}  // namespace ostrelle
