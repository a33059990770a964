#pragma once

#include <chrono>

namespace ostrelle {

using SystemTime = std::chrono::system_clock::time_point;

// Where the log takes its dates and its time zone from. A port so that tests can pin both:
// the stamp of a line and the age of a file must not depend on when or where a test runs.
// Called from any thread.
class LogClock {
  public:
    virtual ~LogClock() = default;

    virtual SystemTime now() const = 0;
    // The local time zone's distance from UTC at that moment (east positive).
    virtual std::chrono::seconds utcOffset(SystemTime time) const = 0;
};

// The wall clock and the process's current time zone.
class SystemLogClock final : public LogClock {
  public:
    SystemTime now() const override;
    std::chrono::seconds utcOffset(SystemTime time) const override;
};

}  // namespace ostrelle
