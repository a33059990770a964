#pragma once

#include <vector>

#include "support/main_queue.h"
#include "support/task_schedule.h"

namespace ostrelle {

// A main queue whose clock moves only when told to. Due tasks run in order of their due time,
// and in posting order among equal times; tasks they post run too if they fall due in the same advance.
class VirtualClockQueue final : public MainQueue {
  public:
    explicit VirtualClockQueue(double start = 0) : now_(start) {}

    void post(Task task) override;
    TaskHandle postAfter(double seconds, Task task) override;
    double now() const override { return now_; }

    // Moves the clock to `time` (never backwards), running every task due at or before it.
    void advanceTo(double time);
    void advanceBy(double seconds) { advanceTo(now_ + seconds); }
    // Runs everything still scheduled, moving the clock to each task's due time.
    void runAll();
    // Tasks scheduled and neither run nor cancelled.
    std::size_t pendingCount() const;

  private:
    bool runNextDueBy(double time);

    double now_;
    TaskSchedule tasks_;
};

}  // namespace ostrelle
