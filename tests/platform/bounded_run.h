#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <future>

#include "platform/linux/epoll_main_queue.h"

namespace ostrelle::testing {

// Runs `queue` until something quits it; a loop that doesn't end by itself within ten seconds
// fails the test instead of hanging. The watchdog is a thread of its own, so that it is not a
// task that would keep quitWhenIdle() waiting.
inline void runBounded(EpollMainQueue& queue) {
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

}  // namespace ostrelle::testing
