#include "platform/linux/epoll_main_queue.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <string>
#include <thread>
#include <vector>

#include "platform/bounded_run.h"

namespace ostrelle {
namespace {

using testing::runBounded;

// Ordering among due tasks is the shared schedule's (see the virtual-clock queue's tests); here
// the loop must sleep until a delayed task is due, never wake it early, and neither run nor wait
// for cancelled ones, the earliest or the last.
TEST(EpollMainQueue, DelayedTasksRunWhenDueAndCancelledOnesNeitherRunNorStall) {
    EpollMainQueue queue;
    const double start = queue.now();
    std::vector<double> ran;
    TaskHandle earliest = queue.postAfter(0.01, [&] { ran.push_back(-1); });
    queue.postAfter(0.02, [&] { ran.push_back(queue.now() - start); });
    TaskHandle last = queue.postAfter(5, [&] { ran.push_back(-1); });
    earliest.cancel();
    last.cancel();
    queue.quitWhenIdle();
    runBounded(queue);
    ASSERT_EQ(ran.size(), 1u);
    EXPECT_GE(ran[0], 0.02) << "ran early";
    EXPECT_LT(queue.now() - start, 5) << "a cancelled task held the loop";
    EXPECT_EQ(queue.pendingCount(), 0u);
}

TEST(EpollMainQueue, TaskPostedFromAnotherThreadWakesTheSleepingLoop) {
    EpollMainQueue queue;
    std::thread poster;
    bool ran = false;
    queue.post([&] {
        // The loop goes to sleep with nothing scheduled but the watchdog, far off.
        poster = std::thread([&] {
            queue.post([&] {
                ran = true;
                queue.quit();
            });
        });
    });
    runBounded(queue);
    poster.join();
    EXPECT_TRUE(ran);
}

TEST(EpollMainQueue, WatchedPipeCallsBackUntilUnwatched) {
    EpollMainQueue queue;
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    std::string received;
    ASSERT_TRUE(queue.watch(ends[0], [&] {
        char byte = 0;
        if (::read(ends[0], &byte, 1) == 1) received += byte;
        if (byte == 'b') {
            // A watcher may remove itself; the byte written after it is not read.
            queue.unwatch(ends[0]);
            ASSERT_EQ(::write(ends[1], "c", 1), 1);
            queue.quitWhenIdle();
        }
    }));
    std::thread writer([&] { ASSERT_EQ(::write(ends[1], "ab", 2), 2); });
    runBounded(queue);
    writer.join();
    EXPECT_EQ(received, "ab");
    EXPECT_FALSE(queue.watch(-1, [] {}));
    ::close(ends[0]);
    ::close(ends[1]);
}

TEST(EpollMainQueue, QuitFromATaskLeavesLaterTasksForTheNextRun) {
    EpollMainQueue queue;
    std::string ran;
    queue.post([&] {
        ran += "a";
        queue.quit();
    });
    queue.post([&] { ran += "b"; });
    runBounded(queue);
    EXPECT_EQ(ran, "a");
    queue.quitWhenIdle();
    runBounded(queue);
    EXPECT_EQ(ran, "ab");
}

}  // namespace
}  // namespace ostrelle
