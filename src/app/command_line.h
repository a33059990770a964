#pragma once

#include <optional>
#include <span>
#include <string>
#include <variant>

#include "app/ostrelle_app.h"

namespace ostrelle::app {

// What `ostrelle` was asked to do.
struct Invocation {
    enum class Request { run, toggle, open, help, version };
    Request request = Request::run;
    std::optional<std::string> replayFile;
    AppOptions options;
};

inline constexpr const char* usage =
    "Usage: ostrelle [--open] [--toggle] [--replay FILE] [--dry-run] [--bindings PATH]\n"
    "Runs Ostrelle in the tray, taking over from a running instance (also \"ostrelle-cli run\").\n"
    "  --open          open the window of the running instance, or start with it open\n"
    "  --toggle        turn gestures off in the running instance, or on again\n"
    "  --replay FILE   play a recording in real time instead of reading the touchpad\n"
    "  --dry-run       record actions instead of sending keys\n"
    "  --bindings PATH use this bindings file instead of the usual one\n";

// The arguments after the program's name; the problem's description when they don't parse.
std::variant<Invocation, std::string> parseInvocation(std::span<const std::string> arguments);

}  // namespace ostrelle::app
