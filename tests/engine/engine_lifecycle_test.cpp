// Keeping the touch source running: start-up, the switch, retries while it fails, wake, the toggle key.
#include <nlohmann/json.hpp>

#include "actions/key_shortcut_json.h"
#include "engine/engine_fixture.h"

namespace ostrelle::testing {
namespace {

class EngineLifecycle : public EngineFixture {};

const KeyShortcut controlOptionG{5, 0x40000 | 0x80000};
const KeyShortcut commandF5{96, 0x100000};
const KeyShortcut plainG{5, 0};

TEST_F(EngineLifecycle, StartsListeningUnlessTurnedOffBefore) {
    settings.setData(settings_keys::listening, "yes");  // not a boolean: as if never set
    EXPECT_TRUE(engine().isEnabled());
    EXPECT_TRUE(source.isRunning());

    destroyEngine();
    EXPECT_FALSE(source.isRunning());
    settings.setBool(settings_keys::listening, false);
    EXPECT_FALSE(engine().isEnabled());
    EXPECT_FALSE(source.isRunning());
}

TEST_F(EngineLifecycle, TurningOnAndWakingRestartTheSourceWithALogLine) {
    engine().setEnabled(false);
    EXPECT_FALSE(source.isRunning());
    EXPECT_EQ(settings.boolValue(settings_keys::listening), false);
    engine().systemDidWake();  // while off there is nothing to restart
    EXPECT_TRUE(logged.empty());
    engine().setEnabled(true);
    EXPECT_TRUE(source.isRunning());
    EXPECT_EQ(settings.boolValue(settings_keys::listening), true);
    tapAt(1.0, 1);
    engine().systemDidWake();
    EXPECT_TRUE(engine().receivedTouches());
    EXPECT_EQ(logged,
              (std::vector<std::string>{
                  "restarting touch input (gestures turned on): 0 gesture events since the last start, 0 "
                  "with touches; last touch none since launch",
                  "restarting touch input (Mac woke up): 2 gesture events since the last start, 1 with "
                  "touches; last touch then"}));
}

TEST_F(EngineLifecycle, AFailingSourceIsRetriedEveryTwoSecondsUntilItStarts) {
    source.refuse = TouchSourceError::permissionNeeded();
    engine();
    EXPECT_EQ(engine().sourceError(), TouchSourceError::permissionNeeded().description);
    engine().retryIfFailed();  // tries at once, but never keeps a second retry pending
    EXPECT_EQ(source.starts, 2);
    EXPECT_EQ(queue.pendingCount(), 1U);
    queue.advanceBy(1.999);
    EXPECT_EQ(source.starts, 2);
    queue.advanceBy(0.001);
    EXPECT_EQ(source.starts, 3);

    source.refuse.reset();  // the user granted the permission
    queue.advanceBy(2.0);
    EXPECT_EQ(source.starts, 4);
    EXPECT_FALSE(engine().sourceError().has_value());
    queue.advanceBy(10.0);
    engine().retryIfFailed();
    EXPECT_EQ(source.starts, 4);

    source.refuse = TouchSourceError::permissionNeeded();
    engine().systemDidWake();  // fails again
    engine().setEnabled(false);
    queue.advanceBy(2.0);
    EXPECT_EQ(source.starts, 5);                      // turned off, it is not retried
    EXPECT_TRUE(engine().sourceError().has_value());  // and the error is left as it was
}

std::optional<KeyShortcut> storedShortcut(const Settings& settings) {
    const auto data = settings.dataValue(settings_keys::toggleShortcut);
    return data ? std::optional(keyShortcutFromJSON(nlohmann::json::parse(*data))) : std::nullopt;
}

TEST_F(EngineLifecycle, TheToggleShortcutFlipsTheSwitchIsStoredAndPausesWhileRecording) {
    engine().suspendToggleShortcut(true);  // nothing to release or take back yet
    engine().suspendToggleShortcut(false);
    engine().setToggleShortcut(controlOptionG);
    engine().setToggleShortcut(controlOptionG);  // the same again registers nothing
    EXPECT_EQ(hotKeys.registrations, 1);
    EXPECT_FALSE(engine().toggleShortcutError().has_value());
    EXPECT_EQ(engine().toggleShortcut(), controlOptionG);
    EXPECT_EQ(storedShortcut(settings), controlOptionG);
    hotKeys.press(controlOptionG);
    hotKeys.press(commandF5);  // not ours
    EXPECT_FALSE(engine().isEnabled());
    hotKeys.press(controlOptionG);
    EXPECT_TRUE(engine().isEnabled());

    // It pauses while the user records a new one.
    engine().suspendToggleShortcut(true);
    hotKeys.press(controlOptionG);
    EXPECT_TRUE(engine().isEnabled());
    engine().suspendToggleShortcut(false);
    hotKeys.press(controlOptionG);
    EXPECT_FALSE(engine().isEnabled());

    engine().suspendToggleShortcut(true);
    engine().setToggleShortcut(commandF5);  // a change ends the pause and releases the old key
    engine().suspendToggleShortcut(false);  // as the recorder does when it closes
    hotKeys.press(controlOptionG);
    hotKeys.press(commandF5);
    EXPECT_TRUE(engine().isEnabled());
    EXPECT_EQ(hotKeys.registered.size(), 1U);

    engine().setToggleShortcut(std::nullopt);
    EXPECT_FALSE(engine().toggleShortcut().has_value());
    EXPECT_EQ(storedShortcut(settings), std::nullopt);
    EXPECT_EQ(hotKeys.registered.size(), 0U);
}

TEST(EngineToggleShortcut, ARefusedChangeSaysWhyAndKeepsTheOldOneWorking) {
    const struct {
        const char* name;
        KeyShortcut shortcut;
        HotKeyRegistrar::Status status;
        std::string error;
    } rows[] = {
        {"not global", plainG, HotKeyRegistrar::success, "Use ⌃, ⌥ or ⌘ with a key, or an F-key alone."},
        {"taken elsewhere", commandF5, HotKeyRegistrar::alreadyTaken,
         commandF5.display(nullptr) + " is already used by another app. Pick another."},
        {"other failures", commandF5, -50,
         "macOS couldn't register " + commandF5.display(nullptr) + " (error -50)."},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EngineRig rig;
        rig.engine().setToggleShortcut(controlOptionG);
        rig.hotKeys.failWith = row.status;
        rig.engine().setToggleShortcut(row.shortcut);
        EXPECT_EQ(rig.engine().toggleShortcutError(), row.error);
        EXPECT_EQ(rig.engine().toggleShortcut(), controlOptionG);
        EXPECT_EQ(storedShortcut(rig.settings), controlOptionG);
        rig.hotKeys.press(controlOptionG);
        EXPECT_FALSE(rig.engine().isEnabled());
    }
}

TEST_F(EngineLifecycle, AStoredShortcutIsRegisteredAtStartAndBadOnesAreIgnored) {
    settings.setData(settings_keys::toggleShortcut, toJSON(controlOptionG).dump());
    EXPECT_EQ(engine().toggleShortcut(), controlOptionG);
    EXPECT_EQ(hotKeys.registered.size(), 1U);
    destroyEngine();  // which releases the key and the press handler
    EXPECT_EQ(hotKeys.registered.size(), 0U);
    EXPECT_FALSE(hotKeys.onPress);

    for (const std::string& stored : {std::string("not json"), toJSON(plainG).dump()}) {
        settings.setData(settings_keys::toggleShortcut, stored);
        EXPECT_FALSE(engine().toggleShortcut().has_value()) << stored;
        destroyEngine();
    }
}

TEST_F(EngineLifecycle, ObserversHearPublishedChangesOnly) {
    int changes = 0;
    engine().observers.add([&] { ++changes; });
    engine().setCapturing(false);  // no change
    EXPECT_EQ(changes, 0);
    engine().setCapturing(true);
    EXPECT_EQ(changes, 1);
    landAt(1.0, 1);  // receivedTouches
    EXPECT_EQ(changes, 2);
}

}  // namespace
}  // namespace ostrelle::testing
