// Keys and clicks as an X client receives them, sent through XTest or through whatever output
// the service picks; and what it says when it has none.
#include "platform/linux/xtest_key_output.h"

#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

#include <cstdlib>

#include "platform/linux/key_code_output.h"
#include "platform/x11_test_window.h"
#include "platform/xvfb_server.h"
#include "support/log.h"
#include "testing/temporary_folder.h"

namespace ostrelle {
namespace {

using testing::X11TestWindow;
using testing::XInputEvent;
using testing::XvfbServer;
using Kind = XInputEvent::Kind;

constexpr unsigned xOffset = 8;
constexpr unsigned controlMask = 1U << 2;  // X's ControlMask

// Ctrl+T and a left click, as the runner sends a chord: modifier first and last (a minus: up).
void sendChordAndClick(KeyCodeOutput& output) {
    for (const int code : {KEY_LEFTCTRL, KEY_T, -KEY_T, -KEY_LEFTCTRL, BTN_LEFT, -BTN_LEFT})
        output.postKeyCode(static_cast<std::uint16_t>(std::abs(code)), code > 0);
}

void expectChordAndClick(X11TestWindow& window) {
    const std::vector<XInputEvent> expected = {
        {Kind::keyPress, KEY_LEFTCTRL + xOffset},
        {Kind::keyPress, KEY_T + xOffset},
        {Kind::keyRelease, KEY_T + xOffset},
        {Kind::keyRelease, KEY_LEFTCTRL + xOffset},
        {Kind::buttonPress, 1},
        {Kind::buttonRelease, 1},
    };
    const std::vector<XInputEvent> events = window.take(expected.size());
    ASSERT_EQ(events, expected);
    EXPECT_EQ(events[1].state & controlMask, controlMask) << "T is pressed with Ctrl held";
    EXPECT_EQ(events[4].state & controlMask, 0U) << "the click comes after Ctrl is up";
    EXPECT_EQ(window.next(std::chrono::milliseconds(50)), std::nullopt) << "nothing more";
}

// The log lines written while this lives.
struct LogLines {
    std::vector<std::pair<Log::Level, std::string>> lines;
    LogLines() {
        Log::setListener(
            [this](Log::Level level, std::string_view line) { lines.emplace_back(level, line); });
    }
    ~LogLines() { Log::setListener(nullptr); }
};

EnvironmentLookup environmentWith(std::optional<std::string> display) {
    return [display](std::string_view name) { return name == "DISPLAY" ? display : std::nullopt; };
}

TEST(XTestKeyOutput, AWindowReceivesTheChordAndTheClickInOrder) {
    XvfbServer server;
    X11TestWindow window(server.display());
    auto made = XTestKeyOutput::create(server.display());
    ASSERT_TRUE(std::holds_alternative<std::unique_ptr<XTestKeyOutput>>(made)) << std::get<std::string>(made);
    auto& output = *std::get<std::unique_ptr<XTestKeyOutput>>(made);
    // A key beyond what X can name is skipped, not sent as another.
    output.postKeyCode(KEY_MICMUTE, true);
    sendChordAndClick(output);
    expectChordAndClick(window);
}

TEST(KeyCodeOutput, FallsBackToXWithoutUinputAndSaysOnceWhenNothingWorks) {
    XvfbServer server;
    X11TestWindow window(server.display());
    const testing::TemporaryFolder folder;
    const auto missing = folder.path() / "uinput";
    {
        LogLines log;
        const auto output = openKeyCodeOutput(environmentWith(server.display()), missing);
        EXPECT_EQ(output->unavailableReason(), std::nullopt);
        sendChordAndClick(*output);
        expectChordAndClick(window);
        ASSERT_EQ(log.lines.size(), 1U);
        EXPECT_EQ(log.lines[0].first, Log::Level::warning) << "X reaches fewer windows than uinput";
    }

    struct Row {
        const char* name;
        std::optional<std::string> display;
        std::filesystem::path uinput;
        std::vector<std::string> reasonParts;
    };
    const Row rows[] = {
        {"no node, no display",
         std::nullopt,
         missing,
         {missing.string() + " is missing", "sudo modprobe uinput", "DISPLAY is not set",
          "scripts/install.sh once"}},
        {"not a uinput node, a display that isn't there",
         ":4095",
         "/dev/null",
         {"through /dev/null:", "cannot open the X display :4095", "scripts/install.sh once"}},
    };
    for (const Row& row : rows) {
        LogLines log;
        const auto output = openKeyCodeOutput(environmentWith(row.display), row.uinput);
        const auto reason = output->unavailableReason();
        ASSERT_TRUE(reason) << row.name;
        for (const std::string& part : row.reasonParts)
            EXPECT_NE(reason->find(part), std::string::npos)
                << row.name << ": " << *reason << " lacks " << part;
        output->postKeyCode(KEY_T, true);
        output->postKeyCode(KEY_T, false);
        ASSERT_EQ(log.lines.size(), 1U) << row.name << ": one error when opened, none per key";
        EXPECT_EQ(log.lines[0], std::pair(Log::Level::error, *reason)) << row.name;
    }
}

}  // namespace
}  // namespace ostrelle
