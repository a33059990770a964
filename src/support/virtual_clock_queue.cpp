#include "support/virtual_clock_queue.h"

#include <algorithm>
#include <limits>

namespace ostrelle {

void VirtualClockQueue::post(Task task) {
    postAfter(0, std::move(task));
}

TaskHandle VirtualClockQueue::postAfter(double seconds, Task task) {
    auto cancelled = std::make_shared<bool>(false);
    tasks_.push({now_ + std::max(0.0, seconds), nextOrder_++, std::move(task), cancelled});
    return TaskHandle(cancelled);
}

bool VirtualClockQueue::runNextDueBy(double time) {
    while (!tasks_.empty() && tasks_.top().due <= time) {
        Scheduled next = tasks_.top();
        tasks_.pop();
        if (*next.cancelled) continue;
        now_ = std::max(now_, next.due);
        // Marked as done first, so a late cancel through the handle has no effect.
        *next.cancelled = true;
        next.task();
        return true;
    }
    return false;
}

void VirtualClockQueue::advanceTo(double time) {
    while (runNextDueBy(time)) {
    }
    now_ = std::max(now_, time);
}

void VirtualClockQueue::runAll() {
    while (runNextDueBy(std::numeric_limits<double>::infinity())) {
    }
}

std::size_t VirtualClockQueue::pendingCount() const {
    auto copy = tasks_;
    std::size_t count = 0;
    for (; !copy.empty(); copy.pop()) {
        if (!*copy.top().cancelled) ++count;
    }
    return count;
}

}  // namespace ostrelle
