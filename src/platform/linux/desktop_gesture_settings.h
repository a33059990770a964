#pragma once

#include "gestures/desktop_gesture_settings.h"
#include "support/default_paths.h"

namespace ostrelle {

// The current desktop's gesture settings: the desktop from XDG_CURRENT_DESKTOP; on GNOME tap to
// click from GSettings (through this process's own environment, as GIO reads it) and the running
// GNOME Shell's version over the session bus; on KDE Plasma tap to click from kcminputrc in the
// XDG config folder. Whatever cannot be read stays at its default; nothing here fails.
DesktopGestureSettings readDesktopGestureSettings(const EnvironmentLookup& environment);

}  // namespace ostrelle
