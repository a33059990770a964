#pragma once

#include <time.h>

namespace ostrelle {

// Seconds on CLOCK_MONOTONIC: the clock of the touchpads' event times and of the main queue.
inline double monotonicSeconds() {
    timespec time{};
    ::clock_gettime(CLOCK_MONOTONIC, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

}  // namespace ostrelle
