#pragma once

#include <string_view>

namespace ostrelle {

// The Linux desktops whose shortcuts, settings and own gestures differ enough to matter.
enum class LinuxDesktop {
    gnome,
    kde,
    other,
};

// Read from XDG_CURRENT_DESKTOP, a colon-separated list such as "ubuntu:GNOME" or "KDE".
LinuxDesktop linuxDesktopFrom(std::string_view currentDesktop);

// How the desktop calls itself in texts shown to the user.
std::string_view displayName(LinuxDesktop desktop);

}  // namespace ostrelle
