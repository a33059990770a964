#include "support/log_writer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "support/fake_log_clock.h"
#include "support/log_time_stamp.h"
#include "testing/temporary_folder.h"

namespace ostrelle {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using testing::FakeLogClock;
using testing::readLines;
using testing::readText;

class LogWriterTest : public ::testing::Test {
  protected:
    std::filesystem::path logFile() const { return folder / "Logs" / "Ostrelle" / "Ostrelle.log"; }

    // The message part of every line, after the stamp and the level.
    std::vector<std::string> entries() const {
        std::vector<std::string> result;
        for (const auto& line : readLines(logFile())) {
            const auto afterStamp = line.find(' ');
            result.push_back(afterStamp == std::string::npos ? line : line.substr(afterStamp + 1));
        }
        return result;
    }

    testing::TemporaryFolder folder;
    std::shared_ptr<FakeLogClock> clock = std::make_shared<FakeLogClock>();
    LogWriter log{logFile(), clock};
};

TEST_F(LogWriterTest, WritesStampLevelAndMessageOnOneLine) {
    clock->setUTCOffset(1h);
    const SystemTime called = clock->now() + 589ms;
    clock->set(called);
    log.error("touch source failed");
    log.warning("event tap disabled by the system");
    log.error("action failed: two\nlines and ünïcødé");  // no escaping of any kind
    log.flush();

    const std::string stamp = formatLogTimeStamp(called, 1h);
    EXPECT_EQ(readText(logFile()), stamp + " ERROR touch source failed\n" + stamp +
                                       " WARN event tap disabled by the system\n" + stamp +
                                       " ERROR action failed: two\nlines and ünïcødé\n");
    EXPECT_THAT(stamp, ::testing::MatchesRegex(R"(....-..-..T..:..:..\.589\+01:00)"));
}

TEST_F(LogWriterTest, StampsTheTimeOfTheCallNotOfTheWrite) {
    log.error("first");
    const SystemTime called = clock->now();
    clock->advance(5s);
    log.flush();
    EXPECT_EQ(readText(logFile()), formatLogTimeStamp(called, 0s) + " ERROR first\n");
}

TEST_F(LogWriterTest, CreatesTheMissingFolderWithTheFirstEntry) {
    ASSERT_FALSE(std::filesystem::exists(logFile().parent_path()));
    log.warning("restarting touch input");
    log.flush();
    EXPECT_THAT(entries(), ElementsAre("WARN restarting touch input"));
}

TEST_F(LogWriterTest, AppendsToAnExistingFile) {
    std::filesystem::create_directories(logFile().parent_path());
    testing::writeText(logFile(), "earlier line\n");
    log.error("later");
    log.flush();
    EXPECT_THAT(readLines(logFile()), ElementsAre("earlier line", ::testing::EndsWith(" ERROR later")));
}

// Repeats are judged by text alone, against the entry just before only.
TEST_F(LogWriterTest, SuppressesOnlyImmediateRepeats) {
    log.error("A");
    log.error("A");
    log.flush();
    EXPECT_THAT(entries(), ElementsAre("ERROR A"));

    log.error("B");
    log.error("A");
    log.flush();
    EXPECT_THAT(entries(), ElementsAre("ERROR A", "ERROR B", "ERROR A"));

    log.warning("A");
    log.error("C");
    log.warning("C");
    log.flush();
    EXPECT_THAT(entries(), ElementsAre("ERROR A", "ERROR B", "ERROR A", "ERROR C"));
}

TEST_F(LogWriterTest, ARepeatIsSkippedEvenWhenTheFirstWriteFailed) {
    // A plain file where the folder should be: nothing can be written at all.
    std::filesystem::create_directories(logFile().parent_path().parent_path());
    testing::writeText(logFile().parent_path(), "in the way");
    log.error("lost");
    log.flush();
    std::filesystem::remove(logFile().parent_path());
    log.error("lost");
    log.error("kept");
    log.flush();
    EXPECT_THAT(entries(), ElementsAre("ERROR kept"));
}

TEST_F(LogWriterTest, AFreshWriterWritesTheSameMessageAgain) {
    log.error("touch source failed");
    log.flush();
    {
        LogWriter relaunched(logFile(), clock);
        relaunched.error("touch source failed");
    }  // the destructor writes what is still queued
    EXPECT_THAT(entries(), ElementsAre("ERROR touch source failed", "ERROR touch source failed"));
}

TEST_F(LogWriterTest, KeepsTheOrderOfCallsFromManyThreads) {
    constexpr int threadCount = 4;
    constexpr int perThread = 250;
    std::vector<std::thread> threads;
    for (int t = 0; t < threadCount; ++t) {
        threads.emplace_back([this, t] {
            for (int i = 0; i < perThread; ++i) log.error(std::to_string(t) + ":" + std::to_string(i));
        });
    }
    for (auto& thread : threads) thread.join();
    log.flush();

    const auto lines = entries();
    ASSERT_EQ(lines.size(), static_cast<std::size_t>(threadCount * perThread));
    std::vector<int> next(threadCount, 0);
    for (const auto& line : lines) {
        const auto colon = line.find(':');
        const int t = std::stoi(line.substr(6, colon - 6));
        EXPECT_EQ(std::stoi(line.substr(colon + 1)), next[static_cast<std::size_t>(t)]++) << line;
    }
}

TEST_F(LogWriterTest, MovingTheFileKeepsEarlierEntriesInTheOldOne) {
    const auto elsewhere = folder / "elsewhere" / "Other.log";
    log.error("before");
    log.setFilePath(elsewhere);
    EXPECT_EQ(log.filePath(), elsewhere);
    log.error("after");
    log.flush();
    EXPECT_THAT(entries(), ElementsAre("ERROR before"));
    EXPECT_THAT(readLines(elsewhere), ElementsAre(::testing::EndsWith(" ERROR after")));
}

}  // namespace
}  // namespace ostrelle
