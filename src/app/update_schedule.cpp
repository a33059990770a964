#include "app/update_schedule.h"

#include <fmt/format.h>

#include <charconv>
#include <cmath>

namespace ostrelle::app {

std::optional<double> secondsUntilNextCheck(bool allowed, std::optional<double> lastCheck, double now) {
    if (!allowed) return std::nullopt;
    if (!lastCheck || *lastCheck > now) return 0.0;
    const double due = *lastCheck + updateCheckInterval;
    return due > now ? due - now : 0.0;
}

std::optional<double> parseCheckTime(const std::optional<std::string>& stored) {
    if (!stored) return std::nullopt;
    double value = 0;
    const char* end = stored->data() + stored->size();
    const auto [rest, error] = std::from_chars(stored->data(), end, value);
    if (error != std::errc() || rest != end || !std::isfinite(value)) return std::nullopt;
    return value;
}

std::string formatCheckTime(double unixSeconds) {
    return fmt::format("{:.0f}", unixSeconds);
}

}  // namespace ostrelle::app
