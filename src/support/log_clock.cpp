#include "support/log_clock.h"

#include <ctime>

namespace ostrelle {

SystemTime SystemLogClock::now() const {
    return std::chrono::system_clock::now();
}

std::chrono::seconds SystemLogClock::utcOffset(SystemTime time) const {
    const std::time_t seconds = std::chrono::system_clock::to_time_t(time);
    std::tm local{};
    // localtime_r also picks up a time zone changed while the program runs.
    if (localtime_r(&seconds, &local) == nullptr) return std::chrono::seconds{0};
    return std::chrono::seconds{local.tm_gmtoff};
}

}  // namespace ostrelle
