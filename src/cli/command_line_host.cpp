#include "cli/command_line_host.h"

#if OSTRELLE_LINUX_PLATFORM
#include "platform/linux/gio_app_files.h"
#include "platform/linux/x11_connection.h"
#include "platform/linux/xkb_keyboard_layout.h"
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
#if OSTRELLE_LINUX_PLATFORM
        // Key names by the layout the X server has, else by xkbcommon's defaults.
        static const auto x11 = X11Connection::open(processEnvironment()("DISPLAY").value_or(std::string()));
        static const auto layout = XkbKeyboardLayout::forSession(x11.get());
        made.keyboardLayout = layout.get();
#endif
        return made;
    }();
    return host;
}

std::string_view applicationKinds() {
    return kinds;
}

}  // namespace ostrelle::cli
