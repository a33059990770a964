#pragma once

// An engine wired to fakes: a hand-driven touch source, a temporary bindings file, in-memory
// settings, a dry-run system, fake hot keys, and a main queue whose clock the test moves.

#include <gtest/gtest.h>

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

class EngineFixture : public ::testing::Test {
protected:
    EngineFixture() {
        Log::setListener([this](Log::Level, std::string_view message) { logged.emplace_back(message); });
    }
    ~EngineFixture() override { Log::setListener(nullptr); }

    void bind(const std::string& gesture, const std::string& app, const std::string& option) {
        ASSERT_TRUE(store.save(GestureBinding::make(Gesture(gesture), ActionRef{app, option, {}, {}}, 0)));
    }
    GestureEngine& engine() {
        if (!engine_) {
            engine_ = std::make_unique<GestureEngine>(GestureEngine::Services{
                store, source, system, queue, settings, hotKeys, [] { return 1.7e9; },
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
    // A quick tap with n fingers landing at t and lifting 0.1 s later.
    void tapAt(double t, int fingers) {
        std::vector<Contact> hand;
        for (int i = 0; i < fingers; ++i) hand.push_back({i + 1, 0.3 + 0.08 * i, 0.5});
        frameAt(t, hand);
        frameAt(t + 0.1, {});
    }
    // The key codes of the key-down events posted so far.
    std::vector<int> keysDown() const {
        std::vector<int> keys;
        for (const RecordedEvent& event : system.recorded()) {
            if (const auto* key = std::get_if<recorded::Key>(&event); key && key->down) keys.push_back(key->key);
        }
        return keys;
    }

    static constexpr int newTabKey = 17;  // ⌘T
    static constexpr int closeTabKey = 13;  // ⌘W

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

}  // namespace ostrelle::testing
