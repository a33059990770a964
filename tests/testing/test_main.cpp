#include <gtest/gtest.h>
#include <stdlib.h>

#include <csignal>

#include "support/contract.h"
#include "support/log.h"
#include "support/scratch_folder.h"
#include "testing/scratch_home.h"

namespace ostrelle::testing {
namespace {

// Names the test binary's own log file, for a death test's child to find.
constexpr const char* testLogVariable = "OSTRELLE_TEST_LOG";

const ScratchHome* guarded = nullptr;

// Fails the test that left anything in the guarded folders, naming what it left, and empties
// them for the next test. Tests run as root, so permission bits could not have stopped the write.
class UserFileGuard final : public ::testing::EmptyTestEventListener {
  public:
    explicit UserFileGuard(const ScratchHome& home) : home_(home) {}

    void OnTestEnd(const ::testing::TestInfo&) override {
        for (const auto& file : home_.touched())
            ADD_FAILURE() << "a test wrote into the user's files: " << file;
        home_.clear();
    }

  private:
    const ScratchHome& home_;
};

}  // namespace

const ScratchHome& guardedHome() {
    if (guarded == nullptr) contractViolation("no guarded home in this process");
    return *guarded;
}

namespace {

int runTests() {
    // A death test's child is this binary started again with the parent's environment, which
    // already names scratch folders. It dies before it could remove folders of its own, so it
    // makes none.
    if (const char* parentLog = std::getenv(testLogVariable)) {
        Log::setFileURL(parentLog);
        return RUN_ALL_TESTS();
    }

    const ScratchHome home;
    home.enter();
    // The binary's own log stays outside the guarded folders: code under test logs on purpose.
    const ScratchFolder logFolder("ostrelle-test-log");
    const std::filesystem::path logFile = logFolder / "Ostrelle" / "Ostrelle.log";
    ::setenv(testLogVariable, logFile.c_str(), 1);
    Log::setFileURL(logFile);

    guarded = &home;
    ::testing::UnitTest::GetInstance()->listeners().Append(new UserFileGuard(home));
    const int status = RUN_ALL_TESTS();
    Log::flush();
    guarded = nullptr;
    return status;
}

}  // namespace
}  // namespace ostrelle::testing

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    // A program under test that ends before reading all its input must fail the write to it, not
    // end the test binary.
    std::signal(SIGPIPE, SIG_IGN);
    return ostrelle::testing::runTests();
}
