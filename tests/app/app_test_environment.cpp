#include <gtest/gtest.h>

#include <QApplication>
#include <memory>

namespace ostrelle::testing {
namespace {

// One QApplication for the whole test binary, made after the test main has pointed HOME and the
// XDG folders at scratch folders. The offscreen platform unless a test run chose another.
class QtApplication final : public ::testing::Environment {
  public:
    void SetUp() override {
        qputenv("QT_QPA_PLATFORM",
                qgetenv("QT_QPA_PLATFORM").isEmpty() ? "offscreen" : qgetenv("QT_QPA_PLATFORM"));
        application_ = std::make_unique<QApplication>(argc_, argv_);
    }
    void TearDown() override { application_.reset(); }

  private:
    int argc_ = 1;
    char name_[16] = "ostrelle-tests";
    char* argv_[2] = {name_, nullptr};
    std::unique_ptr<QApplication> application_;
};

[[maybe_unused]] const auto* registered = ::testing::AddGlobalTestEnvironment(new QtApplication);

}  // namespace
}  // namespace ostrelle::testing
