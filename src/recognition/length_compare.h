#pragma once

#include <cmath>

namespace ostrelle {

// Thresholds are defined on hypot lengths. Squared lengths decide almost every comparison for a
// fraction of hypot's cost; only when the squared length lies within a hair of the squared limit
// does hypot itself decide, so results are exactly those of comparing hypot(dx, dy) with the limit.
namespace length_compare {

inline constexpr double band = 1e-9;  // relative: far wider than the rounding of either computation

// -1 when hypot(dx, dy) < limit, 0 when equal, 1 when greater.
inline int compare(double dx, double dy, double limit) {
    const double squared = dx * dx + dy * dy;
    const double limitSquared = limit * limit;
    if (squared < limitSquared * (1 - band)) return -1;
    if (squared > limitSquared * (1 + band)) return 1;
    const double length = std::hypot(dx, dy);
    return length < limit ? -1 : (length > limit ? 1 : 0);
}

// Raises `largest` to hypot(dx, dy) when that is larger, computing hypot only when it may be.
inline void raise(double& largest, double dx, double dy) {
    const double squared = dx * dx + dy * dy;
    if (squared <= largest * largest * (1 - band)) return;
    const double length = std::hypot(dx, dy);
    if (length > largest) largest = length;
}

}  // namespace length_compare

inline bool longerThan(double dx, double dy, double limit) {
    return length_compare::compare(dx, dy, limit) > 0;
}
inline bool shorterThan(double dx, double dy, double limit) {
    return length_compare::compare(dx, dy, limit) < 0;
}

}  // namespace ostrelle
