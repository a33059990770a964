// What a command logged is in its log file however it ends: by returning, or by a termination signal.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <cstring>
#include <string>
#include <vector>

#include "cli/cli_runner.h"
#include "recognition/recording.h"
#include "testing/temporary_folder.h"

namespace ostrelle {
namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;
using testing::readLines;

// A four-finger tap bound to a keystroke, replayed without accessibility: the refused keystroke
// is logged as the fingers lift.
const std::string tapBoundToKeys =
    R"([{"id": "0E4A5C3B-7D2F-4B8E-9A61-3C5D7E9F1A21", "gesture": "4.tap", )"
    R"("action": {"appID": "browsers", "optionID": "newtab"}, "createdAt": 1}])";
const std::string refusedKeys =
    " ERROR action failed: Accessibility not granted, so keystrokes can't be sent";

std::string fourFingerTap() {
    const std::vector<Contact> fingers{{1, 0.3, 0.5}, {2, 0.4, 0.5}, {3, 0.5, 0.5}, {4, 0.6, 0.5}};
    return recordingLine(RecordedFrame{1.0, fingers}) + "\n" + recordingLine(RecordedFrame{1.1, {}}) + "\n";
}

struct LogAtExit : ::testing::Test {
    std::vector<std::string> replay(const std::string& file) const {
        return {"replay", file, "--bindings", bindings.string(), "--untrusted"};
    }

    testing::TemporaryFolder folder;
    std::filesystem::path bindings = testing::writeFile(folder.path(), "bindings.json", tapBoundToKeys);
};

TEST_F(LogAtExit, EveryRunLeavesItsLineInTheFile) {
    const auto tap = testing::writeFile(folder.path(), "tap.jsonl", fourFingerTap());
    const testing::ScratchHome home;
    constexpr std::size_t runs = 10;
    for (std::size_t run = 0; run < runs; ++run)
        ASSERT_EQ(testing::runCLI(replay(tap.string()), "", home).status, 0);
    EXPECT_THAT(readLines(home.logFile()),
                AllOf(::testing::SizeIs(runs), ::testing::Each(EndsWith(refusedKeys))));
}

TEST_F(LogAtExit, ATerminationSignalEndsTheProgramOnceItsLinesAreWritten) {
    for (const int number : {SIGTERM, SIGINT}) {
        const testing::ScratchHome home;
        testing::CLIProcess cli(replay("-"), home);
        cli.write(fourFingerTap());  // its input stays open, so it waits for more
        ASSERT_TRUE(cli.waitForOutput(R"("log": "ERROR")")) << strsignal(number);
        cli.signal(number);
        EXPECT_EQ(cli.wait().signal, number) << strsignal(number);
        EXPECT_THAT(readLines(home.logFile()), ElementsAre(EndsWith(refusedKeys))) << strsignal(number);
    }
}

}  // namespace
}  // namespace ostrelle
