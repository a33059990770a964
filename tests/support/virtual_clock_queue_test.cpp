// The virtual-clock main queue: time moves only when told, due tasks run in order.
#include <gtest/gtest.h>

#include "support/virtual_clock_queue.h"

namespace ostrelle {
namespace {

TEST(VirtualClockQueue, RunsDueTasksInTimeThenPostingOrder) {
    VirtualClockQueue queue(10.0);
    std::vector<std::string> ran;
    queue.postAfter(0.35, [&] { ran.push_back("tap"); });
    queue.postAfter(0.1, [&] { ran.push_back("early"); });
    queue.post([&] { ran.push_back("now"); });
    queue.postAfter(0.1, [&] { ran.push_back("early too"); });
    queue.advanceTo(10.1);
    EXPECT_EQ(ran, (std::vector<std::string>{"now", "early", "early too"}));
    EXPECT_EQ(queue.now(), 10.1);
    queue.advanceBy(0.25);
    EXPECT_EQ(ran.back(), "tap");
    EXPECT_EQ(queue.pendingCount(), 0U);
}

TEST(VirtualClockQueue, ATaskSeesTheClockAtItsDueTime) {
    VirtualClockQueue queue;
    double seen = -1;
    queue.postAfter(2.0, [&] { seen = queue.now(); });
    queue.advanceTo(5.0);
    EXPECT_EQ(seen, 2.0);
    EXPECT_EQ(queue.now(), 5.0);
}

TEST(VirtualClockQueue, TasksPostedWhileRunningRunInTheSameAdvanceWhenDue) {
    VirtualClockQueue queue;
    std::vector<double> ran;
    std::function<void()> retry = [&] {
        ran.push_back(queue.now());
        if (ran.size() < 5) queue.postAfter(2.0, retry);
    };
    queue.postAfter(2.0, retry);
    queue.advanceTo(6.0);
    EXPECT_EQ(ran, (std::vector<double>{2.0, 4.0, 6.0}));
    queue.runAll();
    EXPECT_EQ(ran, (std::vector<double>{2.0, 4.0, 6.0, 8.0, 10.0}));
}

TEST(VirtualClockQueue, CancelledTasksNeverRunAndLateCancelsAreHarmless) {
    VirtualClockQueue queue;
    int runs = 0;
    TaskHandle first = queue.postAfter(0.35, [&] { ++runs; });
    TaskHandle second = queue.postAfter(0.35, [&] { ++runs; });
    first.cancel();
    EXPECT_EQ(queue.pendingCount(), 1U);
    queue.advanceBy(1.0);
    EXPECT_EQ(runs, 1);
    second.cancel();
    TaskHandle().cancel();  // an empty handle cancels nothing
    EXPECT_EQ(runs, 1);
}

TEST(VirtualClockQueue, TheClockNeverGoesBackwards) {
    VirtualClockQueue queue(3.0);
    queue.advanceTo(1.0);
    EXPECT_EQ(queue.now(), 3.0);
}

}  // namespace
}  // namespace ostrelle
