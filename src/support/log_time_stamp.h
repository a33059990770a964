#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

#include "support/log_clock.h"

namespace ostrelle {

// ISO 8601 with milliseconds and the offset of the given zone: "2026-03-14T09:26:53.589+01:00",
// or "...Z" for a zero offset. Milliseconds are truncated, never rounded up into the next second.
std::string formatLogTimeStamp(SystemTime time, std::chrono::seconds utcOffset);

// Reads back a stamp of exactly that form (at the start of text; anything after it is ignored).
std::optional<SystemTime> parseLogTimeStamp(std::string_view text);

}  // namespace ostrelle
