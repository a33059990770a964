#pragma once

#include <atomic>
#include <chrono>

#include "support/log_clock.h"

namespace ostrelle::testing {

// A clock that moves only when told to, safe to read from the log's writer thread.
// It starts at the real time (whole seconds) because the age of a log file is measured against
// the file system's own times; from there on a test moves it as far as it likes, without sleeping.
class FakeLogClock final : public LogClock {
  public:
    SystemTime now() const override { return SystemTime{SystemTime::duration{ticks_.load()}}; }
    std::chrono::seconds utcOffset(SystemTime) const override {
        held_.wait(true);
        return std::chrono::seconds{offset_.load()};
    }

    void set(SystemTime time) { ticks_ = time.time_since_epoch().count(); }
    void advance(SystemTime::duration by) { ticks_ += by.count(); }
    void setUTCOffset(std::chrono::seconds offset) { offset_ = offset.count(); }

    // While held, the log's writer thread waits as it writes an entry (when it asks for the offset),
    // so that the entries after it are written once released, however far the clock has moved.
    void hold() { held_ = true; }
    void release() {
        held_ = false;
        held_.notify_all();
    }

  private:
    std::atomic<SystemTime::rep> ticks_{
        std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now().time_since_epoch()) /
        SystemTime::duration{1}};
    std::atomic<std::chrono::seconds::rep> offset_{0};
    std::atomic<bool> held_{false};
};

}  // namespace ostrelle::testing
