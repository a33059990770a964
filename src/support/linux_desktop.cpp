#include "support/linux_desktop.h"

namespace ostrelle {

LinuxDesktop linuxDesktopFrom(std::string_view currentDesktop) {
    // The list names the desktop and what it derives from; the first one we know decides.
    while (!currentDesktop.empty()) {
        const auto end = currentDesktop.find(':');
        const std::string_view name = currentDesktop.substr(0, end);
        if (name == "GNOME" || name == "GNOME-Classic") return LinuxDesktop::gnome;
        if (name == "KDE") return LinuxDesktop::kde;
        if (end == std::string_view::npos) break;
        currentDesktop.remove_prefix(end + 1);
    }
    return LinuxDesktop::other;
}

std::string_view displayName(LinuxDesktop desktop) {
    switch (desktop) {
        case LinuxDesktop::gnome:
            return "GNOME";
        case LinuxDesktop::kde:
            return "KDE Plasma";
        case LinuxDesktop::other:
            break;
    }
    return "your desktop";
}

}  // namespace ostrelle
