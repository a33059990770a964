// The recognizer sees every trackpad frame: once a session is under way it must not touch the heap.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <functional>
#include <memory>
#include <new>

#include "recognition/gesture_recognizer.h"

// Sanitizers bring their own allocator; counting is only meaningful (and only replaced) without them.
#if !defined(__SANITIZE_ADDRESS__)
#define OSTRELLE_COUNTS_ALLOCATIONS 1

namespace {
thread_local bool counting = false;
thread_local std::size_t allocations = 0;
}  // namespace

void* operator new(std::size_t size) {
    if (counting) ++allocations;
    if (void* p = std::malloc(size == 0 ? 1 : size)) return p;
    throw std::bad_alloc();
}
void operator delete(void* p) noexcept {
    std::free(p);
}
void operator delete(void* p, std::size_t) noexcept {
    std::free(p);
}
#endif

namespace ostrelle {
namespace {

#ifdef OSTRELLE_COUNTS_ALLOCATIONS
// How many allocations `run` makes on this thread.
std::size_t allocationsOf(const std::function<void()>& run) {
    allocations = 0;
    counting = true;
    run();
    counting = false;
    return allocations;
}

// Three fingers circling slowly: every rule is evaluated, nothing fires, the hand path fills up.
void circle(GestureRecognizer& recognizer, int from, int to) {
    std::array<Contact, 3> frame{};
    for (int i = from; i < to; ++i) {
        for (std::size_t f = 0; f < frame.size(); ++f)
            frame[f] = {static_cast<std::int64_t>(f),
                        0.4 + 0.1 * static_cast<double>(f) + 0.02 * std::cos(i * 0.2),
                        0.5 + 0.02 * std::sin(i * 0.2)};
        recognizer.process(frame, i * 0.008);
    }
}

TEST(RecognizerAllocations, NoneOnceASessionIsUnderWayOrForWholeTapSessionsOnceWarm) {
    // The counter sees them (kept outside, so that the optimizer cannot leave the allocation out).
    std::unique_ptr<int> kept;
    EXPECT_EQ(allocationsOf([&kept] { kept = std::make_unique<int>(1); }), 1U);
    GestureRecognizer recognizer;
    circle(recognizer, 0, 3);
    EXPECT_EQ(allocationsOf([&] { circle(recognizer, 3, 3000); }), 0U);  // past the hand path's cap

    const std::array<Contact, 4> hand{{{1, 0.3, 0.5}, {2, 0.4, 0.5}, {3, 0.5, 0.5}, {4, 0.6, 0.5}}};
    auto tap = [&](double t) {
        recognizer.process(hand, t);
        recognizer.process(hand, t + 0.05);
        recognizer.process({}, t + 0.1);
    };
    recognizer.process({}, 99.0);  // the circling hand lifts
    tap(100.0);
    tap(101.0);
    EXPECT_EQ(allocationsOf([&] {
                  for (int i = 102; i < 300; ++i) tap(i);
              }),
              0U);
}
#endif

}  // namespace
}  // namespace ostrelle
