#include "support/log_writer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "support/fake_log_clock.h"
#include "support/file_times.h"
#include "support/log.h"
#include "support/log_time_stamp.h"
#include "testing/temporary_folder.h"

namespace ostrelle {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using testing::readLines;
using testing::readText;
using testing::writeText;

constexpr auto thirtyDays = std::chrono::hours{30 * 24};

class LogWriterTest : public ::testing::Test {
  protected:
    // The message part of every line, after the stamp.
    std::vector<std::string> entries() const {
        std::vector<std::string> result;
        for (const auto& line : readLines(logFile)) result.push_back(line.substr(line.find(' ') + 1));
        return result;
    }

    // Last written `ago` before now by the file system's clock.
    static void setModified(const std::filesystem::path& file, std::chrono::hours ago) {
        std::filesystem::last_write_time(file, std::filesystem::file_time_type::clock::now() - ago);
    }

    testing::TemporaryFolder folder;
    std::filesystem::path logFile = folder / "Ostrelle.log";
    std::filesystem::path backupFile = folder / "Ostrelle.1.log";
    std::shared_ptr<testing::FakeLogClock> clock = std::make_shared<testing::FakeLogClock>();
    LogWriter log{logFile, clock};
};

// The entries wait in the writer while the clock moves on, and then go to a file moved to a folder
// not made yet: each is one line, stamped when it was logged.
TEST_F(LogWriterTest, WritesEachEntryAsOneLineStampedWhenLogged) {
    const auto moved = folder / "Logs" / "Ostrelle" / "Ostrelle.log";
    clock->hold();
    log.error("before the move");
    log.setFilePath(moved);
    clock->setUTCOffset(1h);
    const SystemTime first = clock->now() + 589ms;
    clock->set(first);
    log.error("touch source failed");
    clock->advance(5s);
    log.warning("event tap disabled by the system");
    log.error("action failed: two\nlines and ünïcødé");  // no escaping of any kind
    clock->advance(5s);
    clock->release();
    log.flush();
    EXPECT_THAT(entries(), ElementsAre("ERROR before the move"));
    const std::string stamp = formatLogTimeStamp(first, 1h);
    const std::string later = formatLogTimeStamp(first + 5s, 1h);
    EXPECT_EQ(readText(moved), stamp + " ERROR touch source failed\n" + later +
                                   " WARN event tap disabled by the system\n" + later +
                                   " ERROR action failed: two\nlines and ünïcødé\n");
}

// Repeats are judged by text alone, against the entry just before only, even one that could not
// be written.
TEST_F(LogWriterTest, SuppressesOnlyImmediateRepeats) {
    std::filesystem::create_directory(logFile);  // a folder where the file should be: nothing is written
    log.error("A");
    log.flush();
    std::filesystem::remove(logFile);
    for (const char* message : {"A", "B", "A"}) log.error(message);
    log.warning("A");
    log.error("C");
    log.warning("C");
    log.flush();
    EXPECT_THAT(entries(), ElementsAre("ERROR B", "ERROR A", "ERROR C"));
}

TEST_F(LogWriterTest, AFreshWriterWritesTheSameMessageAgainAndWritesAllItHoldsBeforeItEnds) {
    log.error("touch source failed");
    log.flush();
    LogWriter(logFile, clock).error("touch source failed");
    EXPECT_THAT(entries(), ElementsAre("ERROR touch source failed", "ERROR touch source failed"));
}

TEST_F(LogWriterTest, KeepsTheOrderOfCallsFromManyThreads) {
    constexpr int threadCount = 4;
    constexpr int perThread = 250;
    std::vector<std::jthread> threads;
    for (int t = 0; t < threadCount; ++t)
        threads.emplace_back([this, t] {
            for (int i = 0; i < perThread; ++i) log.error(std::to_string(t * perThread + i));
        });
    threads.clear();  // joins them
    log.flush();
    std::vector<int> next(threadCount, 0);
    for (const auto& line : entries()) {
        const int number = std::stoi(line.substr(6));  // after "ERROR "
        EXPECT_EQ(number % perThread, next.at(static_cast<std::size_t>(number / perThread))++) << line;
    }
    EXPECT_EQ(next, std::vector<int>(threadCount, perThread));
}

// 512 KiB exactly stays; one byte more, and the file becomes the backup before the next line.
TEST_F(LogWriterTest, AFileRollsOnlyOncePastTheSizeLimit) {
    for (const std::size_t size : {524288u, 524289u}) {
        const bool rolls = size > 524288u;
        std::string contents(size, 'x');
        contents.back() = '\n';
        writeText(logFile, contents);
        writeText(backupFile, "older backup\n");
        log.error(std::to_string(size));
        log.flush();
        EXPECT_EQ(readText(backupFile), rolls ? contents : "older backup\n") << size;
        EXPECT_EQ(readText(logFile).starts_with(contents), !rolls) << size;
        EXPECT_THAT(readLines(logFile).back(), EndsWith(" ERROR " + std::to_string(size)));
    }
}

// Its age counts from its creation by the log's clock, however recently it was written; a prune
// rolls it as the next entry would, without writing one.
TEST_F(LogWriterTest, AFileRollsOnceCreatedMoreThanThirtyDaysAgo) {
    log.error("first");
    log.flush();
    clock->advance(thirtyDays - 1h);
    log.error("a month on");
    log.prune();
    log.flush();
    EXPECT_FALSE(std::filesystem::exists(backupFile));
    setModified(logFile, -2 * thirtyDays);  // written "just now" by the clock's reckoning
    clock->advance(2h);
    log.prune();
    log.flush();
    EXPECT_THAT(readLines(backupFile), ElementsAre(EndsWith(" ERROR first"), EndsWith(" ERROR a month on")));
    EXPECT_FALSE(std::filesystem::exists(logFile));
}

TEST_F(LogWriterTest, ABackupIsDeletedOnlyWhenUntouchedForThirtyDays) {
    writeText(backupFile, "old\n");
    setModified(backupFile, thirtyDays - 1h);
    log.error("now");
    log.flush();
    EXPECT_EQ(readText(backupFile), "old\n");
    setModified(backupFile, thirtyDays + 1h);
    log.error("later");
    log.flush();
    EXPECT_FALSE(std::filesystem::exists(backupFile));
}

// Where the file system keeps no birth time, the first line's stamp tells, unless it is later than
// the last write; failing both, the last write does.
TEST(LogCreationTime, IsTheBirthTimeOrTheFirstStampOrTheLastWrite) {
    const SystemTime born = std::chrono::sys_days{std::chrono::January / 1 / 2026};
    const SystemTime modified = std::chrono::sys_days{std::chrono::March / 1 / 2026};
    const std::string firstLine = "2026-02-01T01:00:00.250+01:00 ERROR x\nmore";
    EXPECT_EQ(creationTime(FileTimes{10, modified, born}, firstLine), born);
    const FileTimes noBirth{10, modified, std::nullopt};
    EXPECT_EQ(creationTime(noBirth, firstLine),
              std::chrono::sys_days{std::chrono::February / 1 / 2026} + 250ms);
    EXPECT_EQ(creationTime(noBirth, "not a log line\n"), modified);
    EXPECT_EQ(creationTime(noBirth, "2026-04-01T00:00:00.000Z ERROR x\n"), modified);
}

// The process's shared log, pointed at a temporary folder and a still clock for one test.
class SharedLogTest : public LogWriterTest {
  protected:
    SharedLogTest() : previousFile_(Log::fileURL()) {
        Log::setFileURL(logFile);
        Log::setClock(clock);
    }
    ~SharedLogTest() override {
        Log::flush();
        Log::setFileURL(previousFile_);
        Log::setClock(std::make_shared<SystemLogClock>());
    }

  private:
    std::filesystem::path previousFile_;
};

TEST_F(SharedLogTest, WritesThroughItsWriterAndTellsItsListenerEveryEntryUntilRemoved) {
    clock->setUTCOffset(-5h);
    std::vector<std::pair<Log::Level, std::string>> seen;
    Log::setListener([&](Log::Level level, std::string_view message) { seen.emplace_back(level, message); });
    Log::error("touch input restarted");
    Log::warning("touch input restarted");  // a repeat in the file, still seen live
    Log::setListener(nullptr);
    Log::warning("not seen");
    Log::flush();
    EXPECT_THAT(seen, ElementsAre(std::pair{Log::Level::error, std::string("touch input restarted")},
                                  std::pair{Log::Level::warning, std::string("touch input restarted")}));
    const std::string stamp = formatLogTimeStamp(clock->now(), -5h);
    EXPECT_THAT(readLines(logFile),
                ElementsAre(stamp + " ERROR touch input restarted", stamp + " WARN not seen"));

    // Prune rolls a file past the size limit through the same writer.
    writeText(logFile, std::string(Log::maxFileSize + 1, 'x'));
    Log::prune();
    Log::flush();
    EXPECT_TRUE(std::filesystem::exists(backupFile));
}

}  // namespace
}  // namespace ostrelle
