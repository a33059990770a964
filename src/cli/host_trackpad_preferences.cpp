#include "cli/host_trackpad_preferences.h"

namespace ostrelle::cli {

std::unique_ptr<TrackpadPreferences> hostTrackpadPreferences() {
    return std::make_unique<AbsentTrackpadPreferences>();
}

}  // namespace ostrelle::cli
