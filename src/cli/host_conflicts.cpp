#include "cli/host_conflicts.h"

#if defined(OSTRELLE_SERVICE)
#include "gestures/desktop_conflicts.h"
#include "platform/linux/desktop_gesture_settings.h"
#else
#include "cli/host_trackpad_preferences.h"
#endif

namespace ostrelle::cli {

std::optional<SystemConflict> hostConflict(const Gesture& gesture) {
#if defined(OSTRELLE_SERVICE)
    return desktopConflict(gesture, readDesktopGestureSettings(processEnvironment()));
#else
    return systemConflict(gesture, *hostTrackpadPreferences());
#endif
}

}  // namespace ostrelle::cli
