// Writers of the bindings file killed at any moment: the file stays whole and what they leave
// behind goes at the next open.
#include <gtest/gtest.h>
#include <signal.h>

#include <memory>

#include "cli/cli_runner.h"

namespace ostrelle {
namespace {

namespace fs = std::filesystem;

TEST(KilledWriters, LeaveNoTornFileAndNoLitterAfterTheNextOpen) {
    const testing::ScratchHome home;
    const fs::path file = home.temporaryFolder() / "bindings.json";
    ASSERT_EQ(testing::runCLI({"bindings", "--file", file.string()}, "", home).status, 0);
    // All start together and die one after another, so that each gets a little further than the
    // one before: some before their write, some halfway through it, some after.
    const std::vector<std::string> gestures{"3.swipe.up", "3.swipe.down", "3.swipe.left", "3.swipe.right",
                                            "4.swipe.up", "4.swipe.down", "4.click",      "5.click"};
    std::vector<std::unique_ptr<testing::BackgroundCLI>> writers;
    for (const std::string& gesture : gestures)
        writers.push_back(std::make_unique<testing::BackgroundCLI>(
            std::vector<std::string>{"bind", gesture, "system/mission", "--file", file.string()}, home));
    for (const auto& writer : writers) writer->finish(SIGKILL);
    const testing::CLIResult after = testing::runCLI({"bindings", "--file", file.string()}, "", home);
    EXPECT_EQ(after.status, 0);
    EXPECT_EQ(after.err, "") << "the file was whole: nothing set aside, nothing seeded";
    for (const auto& entry : fs::directory_iterator(file.parent_path()))
        EXPECT_FALSE(entry.path().filename().string().starts_with(".bindings.json.")) << entry.path();
}

}  // namespace
}  // namespace ostrelle
