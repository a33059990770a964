#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/fake_log_clock.h"
#include "support/file_times.h"
#include "support/log.h"
#include "support/log_file.h"
#include "support/log_time_stamp.h"
#include "support/log_writer.h"
#include "testing/temporary_folder.h"

namespace ostrelle {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using testing::readLines;
using testing::readText;
using testing::writeText;

constexpr auto day = std::chrono::hours{24};

class LogRollOverTest : public ::testing::Test {
  protected:
    LogRollOverTest() { std::filesystem::create_directories(logFile.parent_path()); }

    void setModified(const std::filesystem::path& file, std::chrono::hours ago) {
        std::filesystem::last_write_time(file, std::filesystem::file_time_type::clock::now() - ago);
    }

    testing::TemporaryFolder folder;
    std::filesystem::path logFile = folder / "Ostrelle" / "Ostrelle.log";
    std::filesystem::path backupFile = folder / "Ostrelle" / "Ostrelle.1.log";
    std::shared_ptr<testing::FakeLogClock> clock = std::make_shared<testing::FakeLogClock>();
    LogWriter log{logFile, clock};
};

TEST(LogBackupPath, InsertsTheGenerationBeforeTheExtension) {
    EXPECT_EQ(backupPathFor("/x/Logs/Ostrelle/Ostrelle.log"), "/x/Logs/Ostrelle/Ostrelle.1.log");
    EXPECT_EQ(backupPathFor("/x/state/Ostrelle/Ostrelle.log"), "/x/state/Ostrelle/Ostrelle.1.log");
}

TEST_F(LogRollOverTest, AFileOverTheSizeLimitBecomesTheBackupBeforeTheNextLine) {
    const std::string big(Log::maxFileSize + 1, 'x');
    writeText(logFile, big);
    writeText(backupFile, "older backup\n");
    log.error("next");
    log.flush();
    EXPECT_EQ(readText(backupFile), big);
    EXPECT_THAT(readLines(logFile), ElementsAre(EndsWith(" ERROR next")));
}

TEST_F(LogRollOverTest, AFileOfExactlyTheLimitStays) {
    ASSERT_EQ(Log::maxFileSize, 524288u);
    writeText(logFile, std::string(Log::maxFileSize - 1, 'x') + "\n");
    log.error("next");
    log.flush();
    EXPECT_FALSE(std::filesystem::exists(backupFile));
    EXPECT_EQ(std::filesystem::file_size(logFile), Log::maxFileSize + readLines(logFile).back().size() + 1);

    // Now one past the limit: the following line starts a new file.
    log.error("after");
    log.flush();
    EXPECT_TRUE(std::filesystem::exists(backupFile));
    EXPECT_THAT(readLines(logFile), ElementsAre(EndsWith(" ERROR after")));
}

TEST_F(LogRollOverTest, GrowsPastTheLimitByItsOwnLinesAndRollsOnce) {
    const std::string message(1000, 'm');
    for (int i = 0; i < 600; ++i) log.error(message + std::to_string(i % 2));
    log.flush();
    const auto current = std::filesystem::file_size(logFile);
    const auto backup = std::filesystem::file_size(backupFile);
    EXPECT_GT(backup, Log::maxFileSize);
    EXPECT_LT(backup, Log::maxFileSize + 1100);
    EXPECT_EQ(current + backup, 600u * (24 + 7 + 1001 + 1));
}

TEST_F(LogRollOverTest, AFileCreatedMoreThanThirtyDaysAgoRolls) {
    log.error("first");
    log.flush();
    clock->advance(29 * day);
    log.error("a month on");
    log.flush();
    EXPECT_FALSE(std::filesystem::exists(backupFile));

    clock->advance(1 * day + 1h);
    log.error("past thirty days");
    log.flush();
    EXPECT_THAT(readLines(backupFile), ElementsAre(EndsWith(" ERROR first"), EndsWith(" ERROR a month on")));
    EXPECT_THAT(readLines(logFile), ElementsAre(EndsWith(" ERROR past thirty days")));
}

// The age of the current file counts from its creation, however recently it was written.
TEST_F(LogRollOverTest, RecentWritesDoNotKeepAnOldFile) {
    log.error("first");
    log.flush();
    clock->advance(31 * day);
    setModified(logFile, -31 * day);  // written "just now" by the clock's reckoning
    log.error("later");
    log.flush();
    EXPECT_TRUE(std::filesystem::exists(backupFile));
}

TEST_F(LogRollOverTest, ABackupIsDeletedOnlyWhenUntouchedForThirtyDays) {
    writeText(backupFile, "old\n");
    setModified(backupFile, 29 * day);
    log.error("now");
    log.flush();
    EXPECT_EQ(readText(backupFile), "old\n");

    setModified(backupFile, 31 * day);
    log.error("later");
    log.flush();
    EXPECT_FALSE(std::filesystem::exists(backupFile));
}

TEST_F(LogRollOverTest, PruneRollsWithoutWriting) {
    log.prune();
    log.flush();
    EXPECT_FALSE(std::filesystem::exists(logFile));

    writeText(backupFile, "old\n");
    setModified(backupFile, 31 * day);
    writeText(logFile, std::string(Log::maxFileSize + 1, 'x'));
    log.prune();
    log.flush();
    EXPECT_FALSE(std::filesystem::exists(logFile));
    EXPECT_EQ(std::filesystem::file_size(backupFile), Log::maxFileSize + 1);
}

TEST_F(LogRollOverTest, PruneMeasuresAgeByTheClock) {
    log.warning("first");
    log.prune();
    log.flush();
    EXPECT_TRUE(std::filesystem::exists(logFile));
    clock->advance(31 * day);
    log.prune();
    log.flush();
    EXPECT_FALSE(std::filesystem::exists(logFile));
    EXPECT_THAT(readLines(backupFile), ElementsAre(EndsWith(" WARN first")));
}

// ---- creation time ----

TEST(LogCreationTime, BirthTimeThenFirstStampThenModification) {
    const SystemTime born = std::chrono::sys_days{std::chrono::January / 1 / 2026};
    const SystemTime modified = std::chrono::sys_days{std::chrono::March / 1 / 2026};
    const std::string firstLine = "2026-02-01T01:00:00.250+01:00 ERROR x\nmore";
    EXPECT_EQ(creationTime(FileTimes{10, modified, born}, firstLine), born);

    const FileTimes noBirth{10, modified, std::nullopt};
    EXPECT_EQ(creationTime(noBirth, firstLine),
              std::chrono::sys_days{std::chrono::February / 1 / 2026} + 250ms);
    EXPECT_EQ(creationTime(noBirth, ""), modified);
    EXPECT_EQ(creationTime(noBirth, "not a log line\n"), modified);
    // A first stamp later than the last write came from a wrong clock.
    EXPECT_EQ(creationTime(noBirth, "2026-04-01T00:00:00.000Z ERROR x\n"), modified);
}

TEST(LogFileTimes, ReadsSizeAndTimesOfARealFile) {
    testing::TemporaryFolder folder;
    const auto file = folder / "Ostrelle.log";
    EXPECT_FALSE(readFileTimes(file).has_value());

    const auto before = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
    writeText(file, "12345");
    const auto times = readFileTimes(file);
    ASSERT_TRUE(times.has_value());
    EXPECT_EQ(times->size, 5u);
    // Both come from the file system's own clock, which may lag the system clock by a tick.
    EXPECT_GE(times->modified, before - 1s);
    EXPECT_LE(times->modified, std::chrono::system_clock::now() + 1s);
    if (times->born) {
        EXPECT_GE(*times->born, before - 1s);
        EXPECT_LE(*times->born, times->modified);
    }
}

}  // namespace
}  // namespace ostrelle
