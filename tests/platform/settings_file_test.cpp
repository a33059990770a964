#include "platform/linux/settings_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <thread>
#include <vector>

#include "testing/temporary_folder.h"

namespace ostrelle {
namespace {

using testing::readText;
using testing::writeText;

class SettingsFileTest : public ::testing::Test {
  protected:
    testing::TemporaryFolder folder;
    const std::filesystem::path file = folder / "settings.json";
};

struct ReadCase {
    std::string name;
    std::string content;  // empty: no file
    std::optional<bool> listening;
    std::optional<std::string> shortcut;
};

class SettingsFileRead : public SettingsFileTest, public ::testing::WithParamInterface<ReadCase> {};

TEST_P(SettingsFileRead, ReadsWhatItCanAndLeavesTheFileAlone) {
    const ReadCase& row = GetParam();
    if (!row.content.empty()) writeText(file, row.content);
    const SettingsFile settings(file);
    EXPECT_EQ(settings.boolValue(settings_keys::listening), row.listening);
    EXPECT_EQ(settings.dataValue(settings_keys::toggleShortcut), row.shortcut);
    EXPECT_EQ(readText(file), row.content);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, SettingsFileRead,
    ::testing::Values(
        ReadCase{"missing", "", std::nullopt, std::nullopt},
        ReadCase{"values", R"({"listening": false, "toggleShortcut": {"key": 1, "modifiers": ["command"]}})",
                 false, R"({"key":1,"modifiers":["command"]})"},
        ReadCase{"wrongTypesAreAbsent", R"({"listening": "no", "toggleShortcut": 3})", std::nullopt,
                 std::nullopt},
        ReadCase{"stringData", R"({"toggleShortcut": "abc"})", std::nullopt, "abc"},
        ReadCase{"notJSON", "{\"listening\": fal", std::nullopt, std::nullopt},
        ReadCase{"notAnObject", "[true]", std::nullopt, std::nullopt}),
    [](const auto& row) { return row.param.name; });

TEST_F(SettingsFileTest, AChangeReplacesABadFileAndDataStaysReadable) {
    writeText(file, "garbage");
    SettingsFile settings(file);
    settings.setData(settings_keys::toggleShortcut, R"({"key":17,"modifiers":["control"]})");
    settings.setBool(settings_keys::listening, false);
    const auto stored = nlohmann::json::parse(readText(file));
    EXPECT_EQ(stored["toggleShortcut"]["key"], 17);  // an object a person can edit, not a string
    EXPECT_EQ(stored["listening"], false);
    EXPECT_EQ(SettingsFile(file).dataValue(settings_keys::toggleShortcut),
              R"({"key":17,"modifiers":["control"]})");
    settings.remove(settings_keys::listening);
    EXPECT_FALSE(SettingsFile(file).boolValue(settings_keys::listening));
}

TEST_F(SettingsFileTest, ConcurrentWritersKeepEveryKey) {
    constexpr int writers = 8;
    std::vector<std::thread> threads;
    // Each its own SettingsFile, as separate processes would be; the lock is per open file.
    for (int i = 0; i < writers; ++i)
        threads.emplace_back([this, i] { SettingsFile(file).setBool("key" + std::to_string(i), true); });
    for (auto& thread : threads) thread.join();
    const SettingsFile settings(file);
    for (int i = 0; i < writers; ++i) EXPECT_TRUE(settings.boolValue("key" + std::to_string(i))) << i;
}

TEST_F(SettingsFileTest, ReloadNamesTheKeysAnotherWriterChanged) {
    SettingsFile mine(file);
    mine.setBool(settings_keys::listening, true);
    mine.setBool(settings_keys::hapticFeedback, true);
    SettingsFile other(file);
    other.setBool(settings_keys::listening, false);
    other.remove(settings_keys::hapticFeedback);
    other.setBool(settings_keys::launchedBefore, true);
    // My own write does not hide the other writer's changes from the next reload.
    mine.setData("own", "x");
    auto changed = mine.reload();
    std::sort(changed.begin(), changed.end());
    EXPECT_EQ(changed, (std::vector<std::string>{settings_keys::launchedBefore, settings_keys::hapticFeedback,
                                                 settings_keys::listening}));
    EXPECT_EQ(mine.boolValue(settings_keys::listening), false);
    EXPECT_TRUE(mine.reload().empty());
}

}  // namespace
}  // namespace ostrelle
