#pragma once

#include <string_view>

#include "actions/action_host.h"

namespace ostrelle::cli {

// The machine as the command line's texts see it: applications are named through the
// platform's files (desktop entries too on Linux). Built once; lives as long as the program.
const ActionHost& commandLineHost();

// What an application chosen for "Open an app" may be here, for messages.
std::string_view applicationKinds();

}  // namespace ostrelle::cli
