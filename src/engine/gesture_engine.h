#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "actions/action_runner.h"
#include "actions/key_shortcut.h"
#include "actions/system_port.h"
#include "engine/hot_key_registrar.h"
#include "engine/live_trace.h"
#include "engine/toggle_hot_key.h"
#include "engine/touch_source.h"
#include "gestures/gesture.h"
#include "recognition/gesture_recognizer.h"
#include "store/binding_store.h"
#include "support/main_queue.h"
#include "support/observers.h"
#include "support/settings.h"
#include "support/wall_clock.h"

namespace ostrelle {

// The coordinator: feeds every frame and click into the recognizer, decides what each recognized
// gesture does (run its binding, wait for a possible double tap, or only report it while the
// editor captures), keeps the touch source running, owns the toggle hot key, and publishes its
// state. Main thread only; deferred work goes through the main queue and holds the engine weakly.
class GestureEngine {
  public:
    // A gesture reported in capture mode; the fresh id makes two equal gestures two changes.
    struct Detection {
        std::string id;
        Gesture gesture;
        friend bool operator==(const Detection&, const Detection&) = default;
    };

    // Everything the engine talks to; each must outlive the engine.
    struct Services {
        BindingStore& store;
        TouchSource& source;
        SystemPort& system;
        MainQueue& queue;
        Settings& settings;
        HotKeyRegistrar& hotKeys;
        WallClock clock = systemWallClock();
        // How the restart log line shows the last touch (local date and time).
        std::function<std::string(double unixSeconds)> formatTime = defaultTimeFormat;
        ActionHost host = {};  // copied; what it points to must outlive the engine too
    };

    static constexpr double startRetryDelay = 2.0;  // seconds between attempts while the source fails
    static constexpr std::string_view nonGlobalShortcutError = "Use ⌃, ⌥ or ⌘ with a key, or an F-key alone.";
    static constexpr std::string_view linuxNonGlobalShortcutError =
        "Use Ctrl, Alt or Super with a key, or an F-key alone.";
    static constexpr std::string_view noGlobalShortcutsError =
        "This desktop doesn't let apps set a global shortcut. Add one in its keyboard settings that "
        "runs the command: ostrelle-cli toggle";

    explicit GestureEngine(Services services);
    ~GestureEngine();
    GestureEngine(const GestureEngine&) = delete;
    GestureEngine& operator=(const GestureEngine&) = delete;

    // Published state; observers hear every change.
    bool isEnabled() const { return isEnabled_; }
    void setEnabled(bool enabled);
    bool isCapturing() const { return isCapturing_; }
    void setCapturing(bool capturing);
    const std::optional<Detection>& lastDetection() const { return lastDetection_; }
    const std::optional<std::string>& sourceError() const { return sourceError_; }
    bool receivedTouches() const { return receivedTouches_; }
    bool isReading() const { return isReading_; }
    const std::optional<KeyShortcut>& toggleShortcut() const { return toggleShortcut_; }
    const std::optional<std::string>& toggleShortcutError() const { return toggleShortcutError_; }
    LiveTrace& liveTrace() { return liveTrace_; }
    ObserverList observers;

    // Diagnostic taps for tools that show the engine at work (a replay prints them); unset normally.
    struct Hooks {
        std::function<void(const Gesture&)> recognized;  // every gesture the recognizer reports
        std::function<void(const ActionRef&)> run;       // every binding handed to the runner
    };
    Hooks hooks;

    // The permission screen calls this once it sees access granted.
    void retryIfFailed();
    void setToggleShortcut(const std::optional<KeyShortcut>& shortcut);
    // While the user records a new shortcut, the current one must not toggle gestures.
    void suspendToggleShortcut(bool suspended);
    // The platform calls this when the computer wakes from sleep.
    void systemDidWake();

    const GestureRecognizer& recognizer() const { return recognizer_; }
    std::optional<std::string> registrationError(HotKeyRegistrar::Status status,
                                                 const std::optional<KeyShortcut>& shortcut) const;
    static std::string defaultTimeFormat(double unixSeconds);
    // The toggle shortcut as the settings hold it; nothing when unset or unreadable.
    static std::optional<KeyShortcut> storedToggleShortcut(const Settings& settings);

  private:
    void apply();
    void restart(const std::string& reason);
    void handle(std::span<const Contact> contacts, double time);
    void click(bool onOwnUI);
    void recognized(const Gesture& gesture, bool onOwnUI);
    const GestureBinding* runnable(const Gesture& gesture) const;
    void run(const Gesture& gesture);
    void updateReading();
    void deferTap(std::function<void()> work);
    void cancelPendingTap();
    void copyCustomShapes();
    ToggleHotKey& hotKey();

    template <typename T>
    void publish(T& field, T value) {
        if (field == value) return;
        field = std::move(value);
        observers.notify();
    }
    // Wraps deferred work so that it does nothing once the engine is gone.
    std::function<void()> whileAlive(std::function<void()> work) const;

    Services services_;
    // Published.
    bool isEnabled_ = true;
    bool isCapturing_ = false;
    std::optional<Detection> lastDetection_;
    std::optional<std::string> sourceError_;
    bool receivedTouches_ = false;
    bool isReading_ = false;
    std::optional<KeyShortcut> toggleShortcut_;
    std::optional<std::string> toggleShortcutError_;
    // Private state.
    LiveTrace liveTrace_;
    ActionRunner runner_;
    GestureRecognizer recognizer_;
    TaskHandle pendingTap_;
    bool ignoreSession_ = false;
    bool retryPending_ = false;
    std::size_t tracedPoints_ = 0;
    std::optional<double> lastTouchAt_;
    ObserverList::Token customsUpdates_ = 0;
    std::unique_ptr<ToggleHotKey> hotKey_;
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace ostrelle
