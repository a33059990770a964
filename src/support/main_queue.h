#pragma once

#include <functional>
#include <memory>

namespace ostrelle {

// A handle to a scheduled task; cancelling it keeps the task from running if it has not run yet.
// Cancelling after it ran, or cancelling twice, has no effect.
class TaskHandle {
  public:
    TaskHandle() = default;
    explicit TaskHandle(std::shared_ptr<bool> cancelled) : cancelled_(std::move(cancelled)) {}

    void cancel() const {
        if (cancelled_) *cancelled_ = true;
    }
    bool isCancelled() const { return cancelled_ && *cancelled_; }

  private:
    std::shared_ptr<bool> cancelled_;
};

// The main thread's queue: everything deferred (a pending tap, a start retry, the steps of a
// multi-step action) goes through it, so nothing else owns a timer and tests can move time by hand.
class MainQueue {
  public:
    using Task = std::function<void()>;

    virtual ~MainQueue() = default;
    // Runs the task on the main thread, after what is already queued.
    virtual void post(Task task) = 0;
    // Runs the task on the main thread once `seconds` have passed.
    virtual TaskHandle postAfter(double seconds, Task task) = 0;
    // Seconds on the queue's clock (monotonic; its origin is the queue's own).
    virtual double now() const = 0;
};

}  // namespace ostrelle
