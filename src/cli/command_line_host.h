#pragma once

#include <string_view>

#include "actions/action_host.h"

namespace ostrelle::cli {

// The machine as the command line's texts see it: applications are named through the
// platform's files (desktop entries too on Linux), and on Linux actions read as the desktop named
// by XDG_CURRENT_DESKTOP does them. Built once; lives as long as the program.
const ActionHost& commandLineHost();

// The actions of the Linux desktop this command runs on; nothing on other systems.
const LinuxActions* linuxDesktopActions();

// What an application chosen for "Open an app" may be here, for messages.
std::string_view applicationKinds();

}  // namespace ostrelle::cli
