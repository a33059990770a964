#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <thread>
#include <vector>

#include "support/main_queue.h"
#include "support/task_schedule.h"

struct epoll_event;

namespace ostrelle {

// The service's main queue: one epoll set holding an eventfd (posts from other threads and
// quit) and the file descriptors the service reads (devices, signals, sockets, D-Bus), waited on
// with a time-out until the earliest scheduled task. With nothing scheduled it blocks without a
// time-out, so an idle service is never woken. Tasks run on the thread that calls run().
class EpollMainQueue final : public MainQueue {
  public:
    using Watcher = std::function<void()>;

    // Throws std::system_error when the kernel objects cannot be made.
    EpollMainQueue();
    ~EpollMainQueue() override;
    EpollMainQueue(const EpollMainQueue&) = delete;
    EpollMainQueue& operator=(const EpollMainQueue&) = delete;

    // Both may be called from any thread.
    void post(Task task) override;
    TaskHandle postAfter(double seconds, Task task) override;
    // CLOCK_MONOTONIC in seconds: the clock evdev stamps events with once switched to it.
    double now() const override;

    // Calls `onReadable` on the queue's thread whenever `fd` can be read; one watcher per fd.
    // Queue thread only. Returns false when the kernel refuses the descriptor.
    bool watch(int fd, Watcher onReadable);
    void unwatch(int fd);

    // Runs tasks and watchers until quit() or, after quitWhenIdle(), until nothing is scheduled.
    void run();
    // Any thread; run() returns after the task or watcher now running, or at once if not yet running.
    void quit();
    // run() returns once no task is scheduled any more (watched descriptors do not count).
    void quitWhenIdle();
    // For a host that runs its own loop (the desktop application's): the descriptor turns
    // readable whenever a watched one does or a task is posted, from any thread; runReady() then
    // runs what is due and what is readable without waiting, and says in how many seconds the
    // next task falls due. Never mixed with run().
    int descriptor() const { return epoll_; }
    std::optional<double> runReady();
    // Tasks scheduled and neither run nor cancelled.
    std::size_t pendingCount();

  private:
    void wake() const;
    void runDue();
    // The due time of the earliest task neither run nor cancelled.
    std::optional<double> nextDue();
    int wait(std::span<epoll_event> events, std::optional<double> due);
    void dispatch(int fd);

    int epoll_ = -1;
    int wakeFd_ = -1;
    std::mutex mutex_;  // guards tasks_
    TaskSchedule tasks_;
    bool coarseTimeouts_ = false;  // the kernel has no epoll_pwait2
    std::map<int, std::shared_ptr<Watcher>> watchers_;
    std::atomic<bool> quit_ = false;
    std::atomic<bool> quitWhenIdle_ = false;
    std::atomic<std::thread::id> loopThread_{};
};

}  // namespace ostrelle
