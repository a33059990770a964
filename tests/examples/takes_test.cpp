// The simulated hands stay inside the recognizer's tolerances for every seed, not only for the
// seeds the bundled examples happen to use.
#include "takes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "examples/finger_lives.h"
#include "recognition/gesture_recognizer.h"

namespace ostrelle::testing {
namespace {

using examples::Performer;
using examples::Side;
using R = GestureRecognizer;

constexpr int seedCount = 200;
constexpr double tapMaxLandingSpread = 0.15;  // s: the recognizer's literal landing limit for a tap

std::vector<RecordedFrame> framesOf(Performer& performer, const examples::Take& take) {
    return performer.sample(take);
}

TEST(Takes, TapsLastLandAndLiftWithinTapLimits) {
    for (int fingers = 3; fingers <= 5; ++fingers) {
        for (int seed = 1; seed <= seedCount; ++seed) {
            Performer performer(static_cast<std::uint64_t>(seed));
            const auto frames = framesOf(performer, examples::tap(performer, fingers, {0.5, 0.5}));
            const auto lives = fingerLives(frames);
            SCOPED_TRACE(::testing::Message() << fingers << " fingers, seed " << seed);
            ASSERT_EQ(lives.size(), static_cast<std::size_t>(fingers));
            EXPECT_LE(frames.back().time - frames.front().time, R::tapMaxDuration);
            EXPECT_LT(latestDown(lives) - earliestDown(lives), tapMaxLandingSpread);
            EXPECT_LE(latestUp(lives) - earliestUp(lives), R::groupWindow);
            EXPECT_GT(latestDown(lives), earliestDown(lives)) << "landings should be staggered";
            EXPECT_GT(latestUp(lives), earliestUp(lives)) << "and so should lifts";
            for (const auto& [id, life] : lives) EXPECT_LT(life.maxMove, R::tapMaxMove);
        }
    }
}

TEST(Takes, ClickComesWhileEveryFingerIsDown) {
    for (int seed = 1; seed <= seedCount; ++seed) {
        Performer performer(static_cast<std::uint64_t>(seed));
        const examples::Take take = examples::click(performer, 4, {0.5, 0.5});
        ASSERT_EQ(take.clicks.size(), 1u);
        const auto lives = fingerLives(framesOf(performer, take));
        EXPECT_GT(take.clicks.front(), latestDown(lives)) << "seed " << seed;
        EXPECT_LT(take.clicks.front(), earliestUp(lives)) << "seed " << seed;
    }
}

TEST(Takes, SwipeStartsOnlyOnceTheWholeHandIsDownAndTravelsFarEnough) {
    for (SwipeDirection direction : allSwipeDirections) {
        for (int seed = 1; seed <= seedCount; ++seed) {
            Performer performer(static_cast<std::uint64_t>(seed));
            const auto frames =
                framesOf(performer, examples::swipe(performer, 3, {0.5, 0.5}, direction, 0.26));
            const auto lives = fingerLives(frames);
            SCOPED_TRACE(::testing::Message() << rawValue(direction) << ", seed " << seed);
            // Displacements count from the last landing, so nothing may slide before it.
            for (const RecordedFrame& frame : frames) {
                if (frame.time > latestDown(lives)) break;
                for (const Contact& c : frame.contacts) {
                    EXPECT_LT(distance(lives.at(c.id).first, {c.x, c.y}), R::tapMaxMove);
                }
            }
            double meanX = 0;
            double meanY = 0;
            for (const auto& [id, life] : lives) {
                meanX += (life.last.x - life.first.x) / 3;
                meanY += (life.last.y - life.first.y) / 3;
            }
            EXPECT_GT(std::hypot(meanX, meanY), R::threeSwipeMinMove);
            const bool horizontal = direction == SwipeDirection::left || direction == SwipeDirection::right;
            EXPECT_EQ(std::abs(meanX) > std::abs(meanY), horizontal);
        }
    }
}

struct RestTapCase {
    const char* name;
    int fingers;
    Side side;
};

class RestTaps : public ::testing::TestWithParam<RestTapCase> {};

TEST_P(RestTaps, TapperLandsAfterTheRestsOnItsSide) {
    const RestTapCase& c = GetParam();
    for (int seed = 1; seed <= seedCount; ++seed) {
        Performer performer(static_cast<std::uint64_t>(seed));
        const auto lives =
            fingerLives(framesOf(performer, examples::restTap(performer, c.fingers, {0.5, 0.5}, c.side)));
        SCOPED_TRACE(::testing::Message() << "seed " << seed);
        ASSERT_EQ(lives.size(), static_cast<std::size_t>(c.fingers));
        // The tapping finger is the last to land; the rests lift after it.
        const FingerLife& tapper = std::prev(lives.end())->second;
        std::vector<double> restXs;
        for (auto it = lives.begin(); it != std::prev(lives.end()); ++it) {
            const FingerLife& rest = it->second;
            EXPECT_GE(tapper.down - rest.down, R::restMinHold);
            EXPECT_GT(rest.up, tapper.up);
            EXPECT_LT(rest.maxMove, R::restMaxMove);
            restXs.push_back(rest.last.x);
        }
        EXPECT_LE(tapper.up - tapper.down, R::restTapMaxDuration);
        EXPECT_LT(tapper.maxMove, R::restTapMaxMove);
        const auto [low, high] = std::minmax_element(restXs.begin(), restXs.end());
        switch (c.side) {
            case Side::left:
                EXPECT_LE(tapper.first.x, *low - R::restTapMinGap);
                break;
            case Side::right:
                EXPECT_GE(tapper.first.x, *high + R::restTapMinGap);
                break;
            case Side::between:
                EXPECT_GT(tapper.first.x, *low);
                EXPECT_LT(tapper.first.x, *high);
                break;
        }
        if (c.fingers == 2) {
            EXPECT_LT(distance(tapper.first, lives.begin()->second.last), R::groupMaxGap);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    Takes, RestTaps,
    ::testing::Values(RestTapCase{"twoLeft", 2, Side::left}, RestTapCase{"twoRight", 2, Side::right},
                      RestTapCase{"threeLeft", 3, Side::left}, RestTapCase{"threeRight", 3, Side::right},
                      RestTapCase{"threeBetween", 3, Side::between}),
    [](const ::testing::TestParamInfo<RestTapCase>& row) { return std::string(row.param.name); });

TEST(Takes, RestSwipeSlidesVerticallyBesideAStillFinger) {
    for (SwipeDirection direction : {SwipeDirection::up, SwipeDirection::down}) {
        for (Side side : {Side::left, Side::right}) {
            for (int seed = 1; seed <= seedCount; ++seed) {
                Performer performer(static_cast<std::uint64_t>(seed));
                const auto lives = fingerLives(
                    framesOf(performer, examples::restSwipe(performer, {0.5, 0.5}, side, direction)));
                SCOPED_TRACE(::testing::Message() << rawValue(direction) << ", seed " << seed);
                ASSERT_EQ(lives.size(), 2u);
                const FingerLife& rest = lives.begin()->second;
                const FingerLife& mover = std::next(lives.begin())->second;
                EXPECT_GE(mover.down - rest.down, R::groupWindow);
                EXPECT_LT(rest.maxMove, R::restMaxMove);
                EXPECT_LT(distance(mover.first, rest.last), R::groupMaxGap);
                EXPECT_EQ(mover.first.x < rest.last.x, side == Side::left);
                const double dx = mover.last.x - mover.first.x;
                const double dy = mover.last.y - mover.first.y;
                EXPECT_GT(std::hypot(dx, dy), R::swipeMinMove);
                EXPECT_LE(std::abs(dx), std::abs(dy));
                EXPECT_EQ(dy > 0, direction == SwipeDirection::down);
            }
        }
    }
}

TEST(Takes, RejectsWhatNoHandCanDo) {
    Performer performer(1);
    EXPECT_THROW(examples::restTap(performer, 2, {0.5, 0.5}, Side::between), std::logic_error);
    EXPECT_THROW(examples::restTap(performer, 4, {0.5, 0.5}, Side::left), std::logic_error);
    EXPECT_THROW(examples::restSwipe(performer, {0.5, 0.5}, Side::left, SwipeDirection::left),
                 std::logic_error);
    EXPECT_THROW(examples::drawing(performer, 3, {{0.5, 0.5}}, 1.0), std::logic_error);
}

}  // namespace
}  // namespace ostrelle::testing
