// The simulated trackpad: frame timing, ids, determinism and the text of the lines.
#include <gtest/gtest.h>

#include <cmath>
#include <variant>

#include "examples/finger_lives.h"
#include "recognition/gesture_recognizer.h"
#include "recording_text.h"
#include "takes.h"

namespace ostrelle::testing {
namespace {

using examples::Performer;

std::vector<double> frameTimes(const std::vector<examples::RecordingLine>& lines) {
    std::vector<double> times;
    for (const auto& line : lines) {
        if (const auto* frame = std::get_if<RecordedFrame>(&line)) times.push_back(frame->time);
    }
    return times;
}

TEST(Performer, FramesComeEveryEightMillisecondsWhileFingersAreDown) {
    Performer performer(7);
    performer.perform("tap", examples::tap(performer, 3, {0.5, 0.5}), {"3.tap"});
    const std::vector<double> times = frameTimes(performer.lines());
    ASSERT_GT(times.size(), 5u);
    for (std::size_t i = 1; i < times.size(); ++i) EXPECT_NEAR(times[i] - times[i - 1], 0.008, 1e-9);
    const auto* last = std::get_if<RecordedFrame>(&performer.lines().back());
    ASSERT_NE(last, nullptr);
    EXPECT_TRUE(last->contacts.empty()) << "a take ends with the frame in which every finger lifted";
    EXPECT_EQ(performer.expected(), std::vector<std::string>{"3.tap"});
}

TEST(Performer, TakesAreSeparateSessionsWithFreshIDs) {
    Performer performer(7);
    const auto first = fingerLives(performer.sample(examples::tap(performer, 3, {0.5, 0.5})));
    const double firstEnd = performer.now();
    const auto second = fingerLives(performer.sample(examples::tap(performer, 3, {0.5, 0.5})));
    // Back-to-back takes must not look like one session resumed after a dropout.
    EXPECT_GE(earliestDown(second) - firstEnd, GestureRecognizer::dropoutWindow);
    EXPECT_LT(first.rbegin()->first, second.begin()->first);
}

TEST(Performer, ClickLineSitsBetweenTheFramesAroundIt) {
    Performer performer(3);
    performer.perform("click", examples::click(performer, 3, {0.5, 0.5}), {"3.click"});
    const auto& lines = performer.lines();
    for (std::size_t i = 1; i + 1 < lines.size(); ++i) {
        if (const auto* click = std::get_if<RecordedClick>(&lines[i])) {
            EXPECT_LE(std::get<RecordedFrame>(lines[i - 1]).time, click->time);
            EXPECT_GT(std::get<RecordedFrame>(lines[i + 1]).time, click->time);
            return;
        }
    }
    ADD_FAILURE() << "no click line";
}

TEST(Performer, SameSeedSameRecordingOtherSeedOtherJitter) {
    auto text = [](std::uint64_t seed) {
        Performer performer(seed);
        performer.perform("swipe", examples::swipe(performer, 4, {0.5, 0.6}, SwipeDirection::up, 0.2), {});
        return examples::recordingText("d", performer.expected(), performer.lines());
    };
    EXPECT_EQ(text(11), text(11));
    EXPECT_NE(text(11), text(12));
}

TEST(Performer, JitterIsAFewThousandthsAndKeepsContactsOnThePad) {
    Performer performer(5);
    examples::FingerPlan still{1, 1.1, 3.1, {{1.1, {0.001, 0.5}}}};
    const auto frames = performer.sample({{still}, {}});
    double largest = 0;
    for (const RecordedFrame& frame : frames) {
        for (const Contact& c : frame.contacts) {
            EXPECT_GE(c.x, 0.0);
            largest = std::max(largest, std::abs(c.y - 0.5));
        }
    }
    EXPECT_GT(largest, 0.0005);
    EXPECT_LT(largest, 0.006);
}

TEST(Performer, PlannedPositionEasesBetweenWaypoints) {
    const examples::FingerPlan finger{1, 0, 1, {{0, {0, 0}}, {1, {1, 0}}}};
    EXPECT_EQ(examples::plannedPosition(finger, -1).x, 0);
    EXPECT_EQ(examples::plannedPosition(finger, 0.5).x, 0.5);
    EXPECT_LT(examples::plannedPosition(finger, 0.1).x, 0.1) << "a finger starts slowly";
    EXPECT_EQ(examples::plannedPosition(finger, 2).x, 1);
}

TEST(RecordingText, NumbersKeepFourDecimals) {
    EXPECT_EQ(examples::fourDecimals(1.0 + 7 * 0.008), 1.056);
    EXPECT_EQ(examples::fourDecimals(0.123456), 0.1235);
    EXPECT_EQ(examples::fourDecimals(12.34), 12.34);
    EXPECT_FALSE(std::signbit(examples::fourDecimals(-0.00001)));
}

TEST(RecordingText, LinesFollowTheRecordingFormat) {
    EXPECT_EQ(examples::lineText(RecordedFrame{1.0 + 7 * 0.008, {{1, 0.25, 0.123456}, {2, 0.3, 0.75}}}),
              R"({"t": 1.056, "touches": [[1, 0.25, 0.1235], [2, 0.3, 0.75]]})");
    EXPECT_EQ(examples::lineText(RecordedFrame{2.5, {}}), R"({"t": 2.5, "touches": []})");
    EXPECT_EQ(examples::lineText(RecordedClick{1.23456, false}), R"({"t": 1.2346, "click": false})");
    EXPECT_EQ(examples::lineText(examples::CommentLine{"three fingers tap"}), "# three fingers tap");
    EXPECT_EQ(examples::recordingText("Taps.", {"3.tap", "4.tap"}, {examples::CommentLine{"x"}}),
              "# Taps.\n# expect: 3.tap\n# expect: 4.tap\n# x\n");
}

}  // namespace
}  // namespace ostrelle::testing
