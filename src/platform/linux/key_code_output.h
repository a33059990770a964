#pragma once

#include <filesystem>
#include <memory>
#include <string_view>

#include "actions/system_port.h"
#include "support/default_paths.h"

namespace ostrelle {

// Texts of the output that sends nothing, completing the reasons of the outputs that failed.
constexpr std::string_view noDisplayVariableText =
    "There is no X display to send them through either (DISPLAY is not set).";
constexpr std::string_view installStepText =
    "Run scripts/install.sh once: it lets the logged-in user send keys and clicks.";
constexpr std::string_view throughXTestText =
    "Sending keys and clicks through X instead: only X11 and Xwayland windows receive them.";

// Where actions send their keys and clicks: the uinput device at `uinput` (any desktop, the
// console too), else XTest on the X display named by DISPLAY. When neither can be had, an
// output that sends nothing and says why, after one error in the log.
std::unique_ptr<KeyCodeOutput> openKeyCodeOutput(const EnvironmentLookup& environment,
                                                 const std::filesystem::path& uinput = "/dev/uinput");

}  // namespace ostrelle
