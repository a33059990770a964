#pragma once

#include <functional>
#include <optional>
#include <string>

#include "actions/action_host.h"
#include "engine/gesture_engine.h"
#include "gestures/system_conflicts.h"
#include "store/binding_store.h"
#include "support/settings.h"

namespace ostrelle::app {

class Updater;

// The long-lived objects the windows show and change, handed to each view. Everything lives on
// the main thread and outlives the views.
struct AppContext {
    GestureEngine& engine;
    BindingStore& store;
    Settings& settings;
    // What the actions know of this machine: keyboard layout, installed applications, the
    // desktop's chords (null off Linux).
    ActionHost host;
    // Whether the platform can give haptic feedback at all; the setting is hidden otherwise.
    bool hasHaptics = false;
    // Why actions can't send keys on this machine; nothing when they can.
    std::optional<std::string> keysError;
    // Made on first use.
    std::function<Updater&()> updater;
    // Where a gesture clashes with the desktop's own touchpad gestures; nothing where it doesn't.
    std::function<std::optional<SystemConflict>(const Gesture&)> conflict = [](const Gesture&) {
        return std::optional<SystemConflict>();
    };
};

}  // namespace ostrelle::app
