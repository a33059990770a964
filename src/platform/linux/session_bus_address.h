#pragma once

#include <optional>
#include <string>

#include "support/default_paths.h"

namespace ostrelle {

// The D-Bus session bus of the environment given, not of this process: DBUS_SESSION_BUS_ADDRESS,
// else the socket "bus" in XDG_RUNTIME_DIR when there is one. Nothing otherwise, so that no bus
// gets started where the session has none.
std::optional<std::string> sessionBusAddress(const EnvironmentLookup& environment);

}  // namespace ostrelle
