#pragma once

#include <functional>
#include <string>

#include "engine/gesture_engine.h"
#include "platform/linux/epoll_main_queue.h"
#include "platform/linux/settings_file.h"

namespace ostrelle::cli {

// The engine hosted without a window: it answers the instance socket's requests and follows the
// settings and bindings files when another process changes them. Everything it is given must
// outlive it; the system port is whatever carries out actions (a dry run, or the real output).
class Service {
  public:
    struct Parts {
        EpollMainQueue& queue;
        TouchSource& source;
        SystemPort& system;
        SettingsFile& settings;
        BindingStore& store;
        HotKeyRegistrar& hotKeys;
        // How many touchpads the source reads now; absent for a recording.
        std::function<int()> touchpadsOpen = nullptr;
        // What the actions know of the machine: keyboard layout, applications, the desktop's chords.
        ActionHost host = {};
    };

    explicit Service(Parts parts);

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

}  // namespace ostrelle::cli
