// Keeping the touch source running: start-up, the switch, retries while it fails, wake, the toggle key.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "actions/key_shortcut_json.h"
#include "engine/engine_fixture.h"

namespace ostrelle::testing {
namespace {

class EngineLifecycle : public EngineFixture {};

const KeyShortcut controlOptionG{5, 0x40000 | 0x80000};
const KeyShortcut plainG{5, 0};

TEST_F(EngineLifecycle, StartsListeningUnlessTurnedOffBefore) {
    engine();
    EXPECT_TRUE(engine().isEnabled());
    EXPECT_TRUE(source.isRunning());

    destroyEngine();
    EXPECT_FALSE(source.isRunning());
    settings.setBool(settings_keys::listening, false);
    EXPECT_FALSE(engine().isEnabled());
    EXPECT_FALSE(source.isRunning());
}

TEST_F(EngineLifecycle, AListeningValueThatIsNotABooleanMeansOn) {
    settings.setData(settings_keys::listening, "yes");
    EXPECT_TRUE(engine().isEnabled());
}

TEST_F(EngineLifecycle, TurningOffStopsTheSourceAndTurningOnLogsTheRestart) {
    engine();
    engine().setEnabled(false);
    EXPECT_FALSE(source.isRunning());
    EXPECT_EQ(settings.boolValue(settings_keys::listening), false);
    EXPECT_TRUE(logged.empty());
    engine().setEnabled(true);
    EXPECT_TRUE(source.isRunning());
    EXPECT_EQ(settings.boolValue(settings_keys::listening), true);
    ASSERT_EQ(logged.size(), 1U);
    EXPECT_EQ(logged[0],
              "restarting touch input (gestures turned on): 0 gesture events since the last start, 0 with touches; "
              "last touch none since launch");
}

TEST_F(EngineLifecycle, WakingRestartsWithTheCountsAndTheLastTouch) {
    engine();
    frameAt(1.0, {{1, 0.5, 0.5}});
    frameAt(1.1, {});
    engine().systemDidWake();
    ASSERT_EQ(logged.size(), 1U);
    EXPECT_EQ(logged[0],
              "restarting touch input (Mac woke up): 2 gesture events since the last start, 1 with touches; "
              "last touch then");
    EXPECT_TRUE(engine().receivedTouches());
    engine().setEnabled(false);
    logged.clear();
    engine().systemDidWake();
    EXPECT_TRUE(logged.empty());
}

TEST_F(EngineLifecycle, AFailingSourceIsRetriedEveryTwoSecondsUntilItStarts) {
    source.refuse = TouchSourceError::permissionNeeded();
    engine();
    EXPECT_EQ(engine().sourceError(), TouchSourceError::permissionNeeded().description);
    EXPECT_EQ(source.starts, 1);
    EXPECT_EQ(queue.pendingCount(), 1U);
    queue.advanceBy(1.999);
    EXPECT_EQ(source.starts, 1);
    queue.advanceBy(0.001);
    EXPECT_EQ(source.starts, 2);
    queue.advanceBy(2.0);
    EXPECT_EQ(source.starts, 3);

    source.refuse.reset();  // the user granted the permission
    queue.advanceBy(2.0);
    EXPECT_EQ(source.starts, 4);
    EXPECT_FALSE(engine().sourceError().has_value());
    queue.advanceBy(10.0);
    EXPECT_EQ(source.starts, 4);
}

TEST_F(EngineLifecycle, NeverMoreThanOneRetryIsPending) {
    source.refuse = TouchSourceError::permissionNeeded();
    engine();
    engine().retryIfFailed();
    engine().retryIfFailed();
    EXPECT_EQ(source.starts, 3);
    EXPECT_EQ(queue.pendingCount(), 1U);
}

TEST_F(EngineLifecycle, RetryIfFailedDoesNothingWhileTheSourceRuns) {
    engine();
    engine().retryIfFailed();
    EXPECT_EQ(source.starts, 1);
}

TEST_F(EngineLifecycle, TurnedOffTheFailingSourceIsNotRetried) {
    source.refuse = TouchSourceError::permissionNeeded();
    engine();
    engine().setEnabled(false);
    queue.advanceBy(2.0);
    EXPECT_EQ(source.starts, 1);
    EXPECT_TRUE(engine().sourceError().has_value());  // left as it was
}

TEST_F(EngineLifecycle, ToggleShortcutFlipsTheSwitchAndIsStored) {
    engine().setToggleShortcut(controlOptionG);
    EXPECT_FALSE(engine().toggleShortcutError().has_value());
    EXPECT_EQ(engine().toggleShortcut(), controlOptionG);
    EXPECT_EQ(keyShortcutFromJSON(nlohmann::json::parse(*settings.dataValue(settings_keys::toggleShortcut))),
              controlOptionG);
    hotKeys.press(5, controlOptionG.carbonModifiers());
    EXPECT_FALSE(engine().isEnabled());
    hotKeys.press(5, controlOptionG.carbonModifiers());
    EXPECT_TRUE(engine().isEnabled());
}

TEST_F(EngineLifecycle, ANonGlobalShortcutIsRefused) {
    engine().setToggleShortcut(controlOptionG);
    engine().setToggleShortcut(plainG);
    EXPECT_EQ(engine().toggleShortcutError(), "Use ⌃, ⌥ or ⌘ with a key, or an F-key alone.");
    EXPECT_EQ(engine().toggleShortcut(), controlOptionG);
}

TEST_F(EngineLifecycle, AShortcutTakenElsewhereKeepsTheOldOne) {
    engine().setToggleShortcut(controlOptionG);
    const KeyShortcut commandF5{96, 0x100000};
    hotKeys.takenElsewhere.insert({96, commandF5.carbonModifiers()});
    engine().setToggleShortcut(commandF5);
    EXPECT_EQ(engine().toggleShortcutError(), commandF5.display(nullptr) + " is already used by another app. Pick another.");
    EXPECT_EQ(engine().toggleShortcut(), controlOptionG);
    hotKeys.press(5, controlOptionG.carbonModifiers());
    EXPECT_FALSE(engine().isEnabled());
}

TEST_F(EngineLifecycle, OtherRegistrationFailuresNameTheStatus) {
    hotKeys.failWith = -50;
    engine().setToggleShortcut(controlOptionG);
    EXPECT_EQ(engine().toggleShortcutError(), "macOS couldn't register " + controlOptionG.display(nullptr) + " (error -50).");
    EXPECT_FALSE(settings.dataValue(settings_keys::toggleShortcut).has_value());
}

TEST_F(EngineLifecycle, ClearingTheShortcutForgetsIt) {
    engine().setToggleShortcut(controlOptionG);
    engine().setToggleShortcut(std::nullopt);
    EXPECT_FALSE(engine().toggleShortcut().has_value());
    EXPECT_FALSE(settings.dataValue(settings_keys::toggleShortcut).has_value());
    EXPECT_EQ(hotKeys.registeredCount(), 0U);
}

TEST_F(EngineLifecycle, AStoredShortcutIsRegisteredAtStartAndBadOnesAreIgnored) {
    settings.setData(settings_keys::toggleShortcut, toJSON(controlOptionG).dump());
    EXPECT_EQ(engine().toggleShortcut(), controlOptionG);
    EXPECT_EQ(hotKeys.registeredCount(), 1U);
    destroyEngine();

    for (const std::string& stored : {std::string("not json"), toJSON(plainG).dump()}) {
        settings.setData(settings_keys::toggleShortcut, stored);
        EXPECT_FALSE(engine().toggleShortcut().has_value()) << stored;
        destroyEngine();
    }
}

TEST_F(EngineLifecycle, SuspendingTheToggleWhileRecordingAShortcut) {
    engine().setToggleShortcut(controlOptionG);
    engine().suspendToggleShortcut(true);
    hotKeys.press(5, controlOptionG.carbonModifiers());
    EXPECT_TRUE(engine().isEnabled());
    engine().suspendToggleShortcut(false);
    hotKeys.press(5, controlOptionG.carbonModifiers());
    EXPECT_FALSE(engine().isEnabled());
}

TEST_F(EngineLifecycle, ObserversHearPublishedChangesOnly) {
    int changes = 0;
    engine().observers.add([&] { ++changes; });
    engine().setCapturing(false);  // no change
    EXPECT_EQ(changes, 0);
    engine().setCapturing(true);
    EXPECT_EQ(changes, 1);
    frameAt(1.0, {{1, 0.5, 0.5}});  // receivedTouches
    EXPECT_EQ(changes, 2);
}

}  // namespace
}  // namespace ostrelle::testing
