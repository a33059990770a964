// The virtual-clock main queue: time moves only when told, due tasks run in order.
#include "support/virtual_clock_queue.h"

#include <gtest/gtest.h>

namespace ostrelle {
namespace {

TEST(VirtualClockQueue, RunsDueTasksInTimeThenPostingOrderEachAtItsDueTime) {
    VirtualClockQueue queue(10.0);
    std::vector<std::pair<std::string, double>> ran;
    const auto task = [&](std::string name) { return [&, name] { ran.emplace_back(name, queue.now()); }; };
    queue.postAfter(0.35, task("tap"));
    queue.postAfter(0.1, task("early"));
    queue.post(task("now"));
    queue.postAfter(0.1, task("early too"));
    queue.advanceTo(10.1);
    const std::vector<std::pair<std::string, double>> due{
        {"now", 10.0}, {"early", 10.0 + 0.1}, {"early too", 10.0 + 0.1}};
    EXPECT_EQ(ran, due);
    queue.advanceBy(0.25);
    EXPECT_EQ(ran.back(), std::make_pair(std::string("tap"), 10.0 + 0.35));
    queue.advanceTo(20.0);
    queue.advanceTo(1.0);  // the clock never goes backwards
    EXPECT_EQ(queue.now(), 20.0);
    EXPECT_EQ(queue.pendingCount(), 0U);
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
    second.cancel();
    TaskHandle().cancel();  // an empty handle cancels nothing
    EXPECT_EQ(runs, 1);
}

}  // namespace
}  // namespace ostrelle
