#pragma once

#include <memory>

#include "gestures/trackpad_preferences.h"

namespace ostrelle::cli {

// Trackpad preferences as nothing stored: every key reads as absent, so the reader's defaults
// (the system's own) decide. Used where this machine keeps no preferences the reader knows.
class AbsentTrackpadPreferences final : public TrackpadPreferences {
  public:
    std::optional<std::int64_t> integer(std::string_view) const override { return std::nullopt; }
};

// The preferences conflict warnings read on this machine. No desktop here stores the keys the
// warnings are about, so this is the absent kind until a platform adapter can read them.
std::unique_ptr<TrackpadPreferences> hostTrackpadPreferences();

}  // namespace ostrelle::cli
