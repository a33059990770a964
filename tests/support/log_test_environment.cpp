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
