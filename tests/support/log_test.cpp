#include "support/log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/default_paths.h"
#include "support/fake_log_clock.h"
#include "support/log_time_stamp.h"
#include "testing/temporary_folder.h"

namespace ostrelle {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;

// The shared log, pointed at a temporary folder and a still clock for the length of one test.
class SharedLogTest : public ::testing::Test {
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

    testing::TemporaryFolder folder;
    std::filesystem::path logFile = folder / "Ostrelle" / "Ostrelle.log";
    std::shared_ptr<testing::FakeLogClock> clock = std::make_shared<testing::FakeLogClock>();

  private:
    std::filesystem::path previousFile_;
};

TEST_F(SharedLogTest, WritesErrorsAndWarningsToItsFile) {
    EXPECT_EQ(Log::fileURL(), logFile);
    clock->setUTCOffset(-5h);
    Log::error("action failed: no front application");
    Log::warning("touch input restarted");
    Log::error("touch input restarted");
    Log::flush();
    const std::string stamp = formatLogTimeStamp(clock->now(), -5h);
    EXPECT_THAT(testing::readLines(logFile), ElementsAre(stamp + " ERROR action failed: no front application",
                                                         stamp + " WARN touch input restarted"));
}

TEST_F(SharedLogTest, PruneRollsThroughTheSharedWriter) {
    std::filesystem::create_directories(logFile.parent_path());
    testing::writeText(logFile, std::string(Log::maxFileSize + 1, 'x'));
    Log::prune();
    Log::flush();
    EXPECT_TRUE(std::filesystem::exists(folder / "Ostrelle" / "Ostrelle.1.log"));
}

TEST_F(SharedLogTest, PipelineAcceptsEntriesAndWritesNothing) {
    Log::pipeline().write(LogPipeline::Type::standard, "first gesture event received; touches in it: 3");
    Log::flush();
    EXPECT_FALSE(std::filesystem::exists(logFile));
}

}  // namespace
}  // namespace ostrelle
