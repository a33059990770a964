#include "cli/command_line_host.h"

#if OSTRELLE_LINUX_PLATFORM
#include "platform/linux/gio_app_files.h"
#else
#include "platform/files/file_system_app_files.h"
#endif

#include "actions/linux_actions.h"
#include "support/default_paths.h"

namespace ostrelle::cli {

#if OSTRELLE_LINUX_PLATFORM
using PlatformAppFiles = GioAppFiles;
constexpr std::string_view kinds = "application bundle or desktop entry";
#else
using PlatformAppFiles = FileSystemAppFiles;
constexpr std::string_view kinds = "application bundle";
#endif

const LinuxActions* linuxDesktopActions() {
#if OSTRELLE_LINUX_PLATFORM
    static const LinuxActions actions(
        linuxDesktopFrom(processEnvironment()("XDG_CURRENT_DESKTOP").value_or(std::string())));
    return &actions;
#else
    return nullptr;
#endif
}

const ActionHost& commandLineHost() {
    static const PlatformAppFiles files;
    static const ActionHost host = [] {
        ActionHost made;
        made.appFiles = &files;
        made.linuxActions = linuxDesktopActions();
        return made;
    }();
    return host;
}

std::string_view applicationKinds() {
    return kinds;
}

}  // namespace ostrelle::cli
