#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>

#include "support/log_clock.h"

namespace ostrelle::testing {

// A clock that moves only when told to, safe to read from the log's writer thread.
// It starts at the real time (whole seconds) because the age of a log file is measured against
// the file system's own times; from there on a test moves it as far as it likes, without sleeping.
class FakeLogClock final : public LogClock {
  public:
    FakeLogClock()
        : FakeLogClock(std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now())) {}
    explicit FakeLogClock(SystemTime start) : nanos_(toNanos(start)) {}

    SystemTime now() const override {
        return SystemTime{
            std::chrono::duration_cast<SystemTime::duration>(std::chrono::nanoseconds{nanos_.load()})};
    }
    std::chrono::seconds utcOffset(SystemTime) const override { return std::chrono::seconds{offset_.load()}; }

    void set(SystemTime time) { nanos_ = toNanos(time); }
    void advance(std::chrono::nanoseconds by) { nanos_ += by.count(); }
    void setUTCOffset(std::chrono::seconds offset) { offset_ = offset.count(); }

  private:
    static std::int64_t toNanos(SystemTime time) {
        return std::chrono::duration_cast<std::chrono::nanoseconds>(time.time_since_epoch()).count();
    }

    std::atomic<std::int64_t> nanos_;
    std::atomic<std::int64_t> offset_{0};
};

}  // namespace ostrelle::testing
