#pragma once

// An engine wired to fakes: a hand-driven touch source, a temporary bindings file, in-memory
// settings, a dry-run system, fake hot keys, and a main queue whose clock the test moves.

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "actions/dry_run_system_port.h"
#include "engine/fake_hot_key_registrar.h"
#include "engine/fake_touch_source.h"
#include "engine/gesture_engine.h"
#include "support/log.h"
#include "support/virtual_clock_queue.h"
#include "testing/temporary_folder.h"

namespace ostrelle::testing {

// The keys the "newtab" and "close" browser actions post.
constexpr int newTab = 17;    // ⌘T
constexpr int closeTab = 13;  // ⌘W

struct EngineRig {
    EngineRig() {
        Log::setListener([this](Log::Level, std::string_view message) { logged.emplace_back(message); });
    }
    ~EngineRig() { Log::setListener(nullptr); }

    // Binds a gesture to a browser action ("newtab" posts ⌘T, "close" ⌘W).
    void bind(const std::string& gesture, const std::string& option) {
        ASSERT_TRUE(
            store.save(GestureBinding::make(Gesture(gesture), ActionRef{"browsers", option, {}, {}}, 0)));
    }
    GestureEngine& engine() {
        if (!engine_) {
            engine_ = std::make_unique<GestureEngine>(
                GestureEngine::Services{store, source, system, queue, settings, hotKeys, [] { return 1.7e9; },
                                        [](double) { return std::string("then"); }});
        }
        return *engine_;
    }
    void destroyEngine() { engine_.reset(); }

    // Moves the clock to t (running what falls due first), then delivers the frame.
    void frameAt(double t, const std::vector<Contact>& contacts) {
        queue.advanceTo(t);
        source.frame(contacts, t);
    }
    // n fingers landing at t.
    void landAt(double t, int fingers) {
        std::vector<Contact> hand;
        for (int i = 0; i < fingers; ++i) hand.push_back({i + 1, 0.3 + 0.08 * i, 0.5});
        frameAt(t, hand);
    }
    // A quick tap with n fingers landing at t and lifting 0.1 s later.
    void tapAt(double t, int fingers) {
        landAt(t, fingers);
        frameAt(t + 0.1, {});
    }
    // Two quick taps 0.2 s apart: a double tap.
    void doubleTapAt(double t, int fingers) {
        tapAt(t, fingers);
        tapAt(t + 0.2, fingers);
    }
    // n fingers down at t, then the trackpad button, over our own window or not.
    void clickAt(double t, int fingers, bool onOwnUI) {
        landAt(t, fingers);
        source.click(onOwnUI);
    }
    // The key codes of the key-down events posted so far.
    std::vector<int> keysDown() const {
        std::vector<int> keys;
        for (const RecordedEvent& event : system.recorded()) {
            if (const auto* key = std::get_if<recorded::Key>(&event); key && key->down)
                keys.push_back(key->key);
        }
        return keys;
    }
    // The gesture id of the latest detection in capture mode, or "" for none.
    std::string detected() {
        const auto& detection = engine().lastDetection();
        return detection ? detection->gesture.id : "";
    }

    // Starts from an empty list rather than the first-launch seed.
    static std::filesystem::path emptyBindingsFile(const TemporaryFolder& folder) {
        writeText(folder.path() / "bindings.json", "[]");
        return folder.path() / "bindings.json";
    }

    TemporaryFolder folder;
    BindingStore store{emptyBindingsFile(folder), false, [] { return 1.7e9; }};
    FakeTouchSource source;
    DryRunSystemPort system;
    VirtualClockQueue queue;
    InMemorySettings settings;
    FakeHotKeyRegistrar hotKeys;
    std::vector<std::string> logged;

  private:
    std::unique_ptr<GestureEngine> engine_;
};

class EngineFixture : public ::testing::Test, public EngineRig {};

using Bindings = std::vector<std::pair<std::string, std::string>>;

// Named cases of table-driven engine tests, each played on a fresh rig with the given bindings:
// the keys the script posted, or the gesture capture mode reported, right after it and again once
// every pending task ran.
inline void expectKeys(const char* name, const Bindings& bindings, const std::vector<int>& keys,
                       const std::function<void(EngineRig&)>& play) {
    SCOPED_TRACE(name);
    EngineRig rig;
    for (const auto& [gesture, option] : bindings) rig.bind(gesture, option);
    rig.engine();
    play(rig);
    EXPECT_EQ(rig.keysDown(), keys);
    rig.queue.runAll();
    EXPECT_EQ(rig.keysDown(), keys) << "after the pending tasks";
}

inline void expectDetected(const char* name, const std::string& id,
                           const std::function<void(EngineRig&)>& play) {
    SCOPED_TRACE(name);
    EngineRig rig;
    rig.bind("3.tap", "newtab");  // capture reports even bound gestures, and runs nothing
    rig.engine().setCapturing(true);
    play(rig);
    EXPECT_EQ(rig.detected(), id);
    rig.queue.runAll();
    EXPECT_EQ(rig.detected(), id) << "after the pending tasks";
    EXPECT_TRUE(rig.system.recorded().empty());
}

}  // namespace ostrelle::testing
