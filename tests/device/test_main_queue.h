#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>

#include "support/main_queue.h"

namespace ostrelle::testing {

// A main queue for the test thread: other threads post, and the test runs what was posted while
// it waits for something, never longer than a limit. Tasks due later run once due.
class TestMainQueue final : public MainQueue {
  public:
    using Clock = std::chrono::steady_clock;

    void post(Task task) override {
        {
            const std::lock_guard lock(mutex_);
            tasks_.push_back({Clock::now(), std::move(task), {}});
        }
        changed_.notify_all();
    }

    TaskHandle postAfter(double seconds, Task task) override {
        auto cancelled = std::make_shared<bool>(false);
        {
            const std::lock_guard lock(mutex_);
            const auto due = Clock::now() + std::chrono::duration_cast<Clock::duration>(
                                                std::chrono::duration<double>(seconds));
            tasks_.push_back({due, std::move(task), cancelled});
        }
        changed_.notify_all();
        return TaskHandle(cancelled);
    }

    double now() const override {
        return std::chrono::duration<double>(Clock::now().time_since_epoch()).count();
    }

    // Runs tasks as they become due until `done` holds; false if `limit` passed first.
    bool runUntil(const std::function<bool()>& done,
                  std::chrono::milliseconds limit = std::chrono::seconds(5)) {
        const auto deadline = Clock::now() + limit;
        while (!done()) {
            std::unique_lock lock(mutex_);
            const auto next = nextDue();
            if (next != tasks_.end() && next->due <= Clock::now()) {
                Entry entry = std::move(*next);
                tasks_.erase(next);
                lock.unlock();
                if (!entry.cancelled || !*entry.cancelled) entry.task();
                continue;
            }
            if (Clock::now() >= deadline) return false;
            // What `done` looks at may change on another thread without a post (a count): look
            // again now and then.
            auto wakeAt = std::min(deadline, Clock::now() + recheckInterval);
            if (next != tasks_.end()) wakeAt = std::min(wakeAt, next->due);
            changed_.wait_until(lock, wakeAt);
        }
        return true;
    }

    // Runs what is due now.
    void runDue() {
        runUntil([] { return false; }, std::chrono::milliseconds(0));
    }

  private:
    static constexpr std::chrono::milliseconds recheckInterval{5};

    struct Entry {
        Clock::time_point due;
        Task task;
        std::shared_ptr<bool> cancelled;
    };

    // The earliest due task, the first posted among equals.
    std::deque<Entry>::iterator nextDue() {
        auto best = tasks_.end();
        for (auto it = tasks_.begin(); it != tasks_.end(); ++it)
            if (best == tasks_.end() || it->due < best->due) best = it;
        return best;
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Entry> tasks_;
};

}  // namespace ostrelle::testing
