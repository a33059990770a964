#pragma once

#include "actions/linux_actions.h"

namespace ostrelle::cli {

// The actions as the desktop this command runs on does them: on Linux the chords and texts of
// the desktop named by XDG_CURRENT_DESKTOP, built once; nothing on other systems.
const LinuxActions* linuxDesktopActions();

}  // namespace ostrelle::cli
