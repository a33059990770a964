#pragma once

#include <chrono>
#include <functional>

namespace ostrelle {

// The wall clock, as seconds since 1970-01-01 UTC. Injected wherever a time is stamped on data
// (binding creation dates, backup file names) so tests can pin it.
using WallClock = std::function<double()>;

inline WallClock systemWallClock() {
    return [] {
        return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
    };
}

// Stored dates count seconds from 2001-01-01 00:00:00 UTC.
inline constexpr double referenceDateInUnixSeconds = 978307200.0;

inline double referenceDateSeconds(double unixSeconds) {
    return unixSeconds - referenceDateInUnixSeconds;
}

}  // namespace ostrelle
