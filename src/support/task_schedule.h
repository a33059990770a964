#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <queue>
#include <vector>

#include "support/main_queue.h"

namespace ostrelle {

// The tasks of a main queue that wait for their time: earliest first, and in posting order among
// equal times. A cancelled task stays until it reaches the front, where it is dropped unrun. Not
// thread-safe: a queue that takes posts from other threads guards it.
class TaskSchedule {
  public:
    using Task = std::function<void()>;
    struct Due {
        double due = 0;
        Task task;
    };

    TaskHandle add(double due, Task task);
    // The earliest task due at or before `time`, taken off and marked as run (so that a late
    // cancel through its handle has no effect), or nothing.
    std::optional<Due> takeDue(double time);
    // The due time of the earliest task neither run nor cancelled.
    std::optional<double> nextDue();
    // Tasks neither run nor cancelled.
    std::size_t pendingCount() const;

  private:
    struct Scheduled {
        double due;
        std::uint64_t order;
        Task task;
        std::shared_ptr<bool> cancelled;
    };
    struct Later {
        bool operator()(const Scheduled& a, const Scheduled& b) const {
            return a.due != b.due ? a.due > b.due : a.order > b.order;
        }
    };
    void dropCancelledFront();

    std::priority_queue<Scheduled, std::vector<Scheduled>, Later> tasks_;
    std::uint64_t nextOrder_ = 0;
};

}  // namespace ostrelle
