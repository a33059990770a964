#pragma once

#include <optional>

#include "support/linux_desktop.h"

namespace ostrelle {

// What a Linux desktop's own touchpad gestures depend on, read for conflict warnings only.
struct DesktopGestureSettings {
    LinuxDesktop desktop = LinuxDesktop::other;
    bool tapToClick = false;
    std::optional<int> gnomeShellMajor;  // nothing when unknown
};

}  // namespace ostrelle
