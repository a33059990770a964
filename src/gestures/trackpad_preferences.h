#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace ostrelle {

// The system's own trackpad settings, read for conflict warnings only; never written.
class TrackpadPreferences {
  public:
    virtual ~TrackpadPreferences() = default;

    // The stored value of key, or nothing when it is absent, unreadable or not an integer.
    // The reader decides the defaults, so adapters only report what is actually stored.
    virtual std::optional<std::int64_t> integer(std::string_view key) const = 0;
};

}  // namespace ostrelle
