#include "cli/linux_desktop_actions.h"

#include "support/default_paths.h"

namespace ostrelle::cli {

const LinuxActions* linuxDesktopActions() {
#if defined(__linux__)
    static const LinuxActions actions(
        linuxDesktopFrom(processEnvironment()("XDG_CURRENT_DESKTOP").value_or(std::string())));
    return &actions;
#else
    return nullptr;
#endif
}

}  // namespace ostrelle::cli
