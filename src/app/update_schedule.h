#pragma once

#include <optional>
#include <string>

namespace ostrelle::app {

inline constexpr double updateCheckInterval = 24 * 60 * 60;  // seconds between automatic checks

// Seconds from `now` until the next automatic check is due: none while checks are not allowed,
// zero when none was made yet or the last was a day or more ago. A last check in the future means
// the clock was set back; waiting for it could take years, so the check is due now.
std::optional<double> secondsUntilNextCheck(bool allowed, std::optional<double> lastCheck, double now);

// The stored time of the last check (seconds since 1970, as text); absent when missing or unreadable.
std::optional<double> parseCheckTime(const std::optional<std::string>& stored);
std::string formatCheckTime(double unixSeconds);

}  // namespace ostrelle::app
