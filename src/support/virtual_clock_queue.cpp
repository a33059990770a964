#include "support/virtual_clock_queue.h"

#include <algorithm>
#include <limits>

namespace ostrelle {

void VirtualClockQueue::post(Task task) {
    postAfter(0, std::move(task));
}

TaskHandle VirtualClockQueue::postAfter(double seconds, Task task) {
    return tasks_.add(now_ + std::max(0.0, seconds), std::move(task));
}

bool VirtualClockQueue::runNextDueBy(double time) {
    std::optional<TaskSchedule::Due> next = tasks_.takeDue(time);
    if (!next) return false;
    now_ = std::max(now_, next->due);
    next->task();
    return true;
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
    return tasks_.pendingCount();
}

}  // namespace ostrelle
