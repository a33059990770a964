// The toggle hot key: register-before-release, suspension, and the status codes.
#include <gtest/gtest.h>

#include "engine/fake_hot_key_registrar.h"
#include "engine/toggle_hot_key.h"

namespace ostrelle {
namespace {

using testing::FakeHotKeyRegistrar;

const KeyShortcut controlOptionG{5, 0x40000 | 0x80000};
const KeyShortcut commandF5{96, 0x100000};

FakeHotKeyRegistrar::Combination combinationOf(const KeyShortcut& s) {
    return {static_cast<std::uint32_t>(s.key), s.carbonModifiers()};
}

struct ToggleHotKeyTest : ::testing::Test {
    FakeHotKeyRegistrar registrar;
    int presses = 0;
    ToggleHotKey hotKey{registrar, [this] { ++presses; }};
};

TEST_F(ToggleHotKeyTest, PressesOfTheRegisteredKeyReachTheHandler) {
    EXPECT_EQ(hotKey.set(controlOptionG), 0);
    registrar.press(5, controlOptionG.carbonModifiers());
    registrar.press(96, commandF5.carbonModifiers());
    EXPECT_EQ(presses, 1);
}

TEST_F(ToggleHotKeyTest, SettingTheSameShortcutTwiceRegistersOnce) {
    EXPECT_EQ(hotKey.set(controlOptionG), 0);
    EXPECT_EQ(hotKey.set(controlOptionG), 0);
    EXPECT_EQ(registrar.registrations, 1);
    EXPECT_EQ(registrar.registeredCount(), 1U);
}

TEST_F(ToggleHotKeyTest, AChangeReleasesTheOldKeyOnlyAfterTheNewOneIsRegistered) {
    hotKey.set(controlOptionG);
    EXPECT_EQ(hotKey.set(commandF5), 0);
    EXPECT_TRUE(registrar.isRegistered(combinationOf(commandF5)));
    EXPECT_FALSE(registrar.isRegistered(combinationOf(controlOptionG)));
    EXPECT_EQ(hotKey.shortcut(), commandF5);
}

TEST_F(ToggleHotKeyTest, AShortcutTakenElsewhereKeepsThePreviousOneWorking) {
    hotKey.set(controlOptionG);
    registrar.takenElsewhere.insert(combinationOf(commandF5));
    EXPECT_EQ(hotKey.set(commandF5), HotKeyRegistrar::alreadyTaken);
    EXPECT_EQ(hotKey.shortcut(), controlOptionG);
    registrar.press(5, controlOptionG.carbonModifiers());
    EXPECT_EQ(presses, 1);
}

TEST_F(ToggleHotKeyTest, OtherFailuresAreReturnedAsTheyCome) {
    registrar.failWith = -50;
    EXPECT_EQ(hotKey.set(controlOptionG), -50);
    EXPECT_FALSE(hotKey.shortcut().has_value());
}

TEST_F(ToggleHotKeyTest, ClearingUnregistersAndForgets) {
    EXPECT_EQ(hotKey.set(std::nullopt), 0);  // never had one: still fine
    hotKey.set(controlOptionG);
    EXPECT_EQ(hotKey.set(std::nullopt), 0);
    EXPECT_EQ(registrar.registeredCount(), 0U);
    EXPECT_FALSE(hotKey.shortcut().has_value());
}

TEST_F(ToggleHotKeyTest, SuspensionKeepsTheShortcutButReleasesTheKey) {
    hotKey.set(controlOptionG);
    hotKey.setSuspended(true);
    EXPECT_EQ(registrar.registeredCount(), 0U);
    EXPECT_EQ(hotKey.shortcut(), controlOptionG);
    registrar.press(5, controlOptionG.carbonModifiers());
    EXPECT_EQ(presses, 0);
    hotKey.setSuspended(false);
    EXPECT_TRUE(registrar.isRegistered(combinationOf(controlOptionG)));
}

TEST_F(ToggleHotKeyTest, SuspendingWithoutAShortcutDoesNothing) {
    hotKey.setSuspended(true);
    hotKey.setSuspended(false);
    EXPECT_EQ(registrar.registrations, 0);
}

TEST_F(ToggleHotKeyTest, SettingWhileSuspendedEndsTheSuspension) {
    hotKey.set(controlOptionG);
    hotKey.setSuspended(true);
    EXPECT_EQ(hotKey.set(commandF5), 0);
    EXPECT_FALSE(hotKey.suspended());
    EXPECT_TRUE(registrar.isRegistered(combinationOf(commandF5)));
    EXPECT_FALSE(registrar.isRegistered(combinationOf(controlOptionG)));
}

TEST(ToggleHotKeyLifetime, DestructionReleasesTheKeyAndTheHandler) {
    FakeHotKeyRegistrar registrar;
    {
        ToggleHotKey hotKey(registrar, [] {});
        hotKey.set(controlOptionG);
        EXPECT_TRUE(registrar.hasPressHandler());
    }
    EXPECT_EQ(registrar.registeredCount(), 0U);
    EXPECT_FALSE(registrar.hasPressHandler());
}

}  // namespace
}  // namespace ostrelle
