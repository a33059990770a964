#include <gtest/gtest.h>

#include <memory>

#include "support/log.h"
#include "testing/temporary_folder.h"

namespace ostrelle {
namespace {

// Any code under test may log; for the whole run the shared log writes into a temporary folder,
// so that no test ever adds lines to the user's real log.
class TemporaryLogEnvironment final : public ::testing::Environment {
  public:
    void SetUp() override {
        // A death test's child dies before any teardown, so it would leave its folder behind; it
        // gets a fixed place that exists only if the child actually logs.
        if (!GTEST_FLAG_GET(internal_run_death_test).empty()) {
            Log::setFileURL(std::filesystem::temp_directory_path() / "ostrelle-death-test-log" / "Ostrelle.log");
            return;
        }
        folder_ = std::make_unique<testing::TemporaryFolder>();
        Log::setFileURL(*folder_ / "Ostrelle" / "Ostrelle.log");
    }
    void TearDown() override {
        Log::flush();
        folder_.reset();
    }

  private:
    std::unique_ptr<testing::TemporaryFolder> folder_;
};

[[maybe_unused]] const auto* const registered =
    ::testing::AddGlobalTestEnvironment(new TemporaryLogEnvironment);

}  // namespace
}  // namespace ostrelle
