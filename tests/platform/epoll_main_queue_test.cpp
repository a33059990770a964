#include "platform/linux/epoll_main_queue.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <future>
#include <string>
#include <thread>
#include <vector>

namespace ostrelle {
namespace {

// Any test that does not end its loop by itself fails here instead of hanging. The watchdog is
// a thread of its own, so that it is not a task that would keep quitWhenIdle() waiting.
void runBounded(EpollMainQueue& queue) {
    std::promise<void> ended;
    auto watchdog = std::async(std::launch::async, [&queue, done = ended.get_future()] {
        const bool timedOut = done.wait_for(std::chrono::seconds(10)) == std::future_status::timeout;
        if (timedOut) queue.quit();
        return timedOut;
    });
    queue.run();
    ended.set_value();
    EXPECT_FALSE(watchdog.get()) << "the loop did not end by itself";
}

struct OrderCase {
    std::string name;
    std::vector<double> delays;  // one task each, posted in this order; negative = post()
    std::vector<int> cancelled;  // indices cancelled right after posting
    std::string expected;        // the indices in the order they ran
};

class EpollOrder : public ::testing::TestWithParam<OrderCase> {};

TEST_P(EpollOrder, RunsDueTasksByTimeThenPostingOrder) {
    const OrderCase& row = GetParam();
    EpollMainQueue queue;
    std::string ran;
    std::vector<TaskHandle> handles;
    const double start = queue.now();
    for (std::size_t i = 0; i < row.delays.size(); ++i) {
        auto task = [&, i] {
            ran += std::to_string(i);
            EXPECT_GE(queue.now() - start, row.delays[i]) << "task " << i << " ran early";
        };
        if (row.delays[i] < 0) {
            queue.post(task);
            handles.emplace_back();
        } else {
            handles.push_back(queue.postAfter(row.delays[i], task));
        }
    }
    for (const int index : row.cancelled) handles[static_cast<std::size_t>(index)].cancel();
    queue.quitWhenIdle();
    runBounded(queue);
    EXPECT_EQ(ran, row.expected);
    EXPECT_EQ(queue.pendingCount(), 0u);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, EpollOrder,
    ::testing::Values(OrderCase{"postsInOrder", {-1, -1, -1}, {}, "012"},
                      OrderCase{"laterDelayRunsLater", {0.03, 0.01, -1}, {}, "210"},
                      OrderCase{"equalDelaysKeepPostingOrder", {0.02, 0.02, 0.02}, {}, "012"},
                      OrderCase{"cancelledNeverRuns", {0.01, 0.02, 0.03}, {1}, "02"},
                      OrderCase{"cancellingTheEarliestDoesNotStallTheRest", {0.01, 0.05}, {0}, "1"},
                      OrderCase{"allCancelledEndsAtOnce", {5, 6}, {0, 1}, ""}),
    [](const auto& row) { return row.param.name; });

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
