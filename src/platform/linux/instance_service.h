#pragma once

#include <functional>
#include <string>

#include "engine/gesture_engine.h"
#include "platform/linux/settings_file.h"

namespace ostrelle {

// The engine as the running instance hosts it, with or without a window: it answers the instance
// socket's requests and follows the settings and bindings files when another process changes
// them. Everything it is given must outlive it; the system port is whatever carries out actions
// (a dry run, or the real output).
class InstanceService {
  public:
    struct Parts {
        MainQueue& queue;
        TouchSource& source;
        SystemPort& system;
        SettingsFile& settings;
        BindingStore& store;
        HotKeyRegistrar& hotKeys;
        // How many touchpads the source reads now; absent for a recording.
        std::function<int()> touchpadsOpen = nullptr;
        // What the actions know of the machine: keyboard layout, applications, the desktop's chords.
        ActionHost host = {};
        // Ends the process's loop: a newcomer asked this instance to quit.
        std::function<void()> quit = nullptr;
        // Shows the main window; absent where there is none (the headless service).
        std::function<void()> open = nullptr;
    };

    explicit InstanceService(Parts parts);

    GestureEngine& engine() { return engine_; }

    // One request from the instance socket; the one-line reply.
    std::string answer(const std::string& request);
    // A file in a watched folder was replaced, written or removed.
    void fileChanged(const std::string& name);

  private:
    void settingsChanged();

    Parts parts_;
    GestureEngine engine_;
};

}  // namespace ostrelle
