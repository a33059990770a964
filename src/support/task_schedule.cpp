#include "support/task_schedule.h"

namespace ostrelle {

TaskHandle TaskSchedule::add(double due, Task task) {
    auto cancelled = std::make_shared<bool>(false);
    tasks_.push({due, nextOrder_++, std::move(task), cancelled});
    return TaskHandle(cancelled);
}

void TaskSchedule::dropCancelledFront() {
    while (!tasks_.empty() && *tasks_.top().cancelled) tasks_.pop();
}

std::optional<TaskSchedule::Due> TaskSchedule::takeDue(double time) {
    dropCancelledFront();
    if (tasks_.empty() || tasks_.top().due > time) return std::nullopt;
    Scheduled next = tasks_.top();
    tasks_.pop();
    *next.cancelled = true;
    return Due{next.due, std::move(next.task)};
}

std::optional<double> TaskSchedule::nextDue() {
    dropCancelledFront();
    if (tasks_.empty()) return std::nullopt;
    return tasks_.top().due;
}

std::size_t TaskSchedule::pendingCount() const {
    auto copy = tasks_;
    std::size_t count = 0;
    for (; !copy.empty(); copy.pop())
        if (!*copy.top().cancelled) ++count;
    return count;
}

}  // namespace ostrelle
