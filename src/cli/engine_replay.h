#pragma once

#include <istream>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace ostrelle::cli {

// A replay through the whole engine: bindings, the double-tap wait, capture mode, and the
// actions a dry-run system records.
struct EngineReplayOptions {
    std::string bindingsFile;  // read, never written: the replay works on a copy
    bool capture = false;
    bool untrusted = false;
    std::optional<std::string> frontApp;
    std::vector<std::pair<std::string, std::string>> settings;  // KEY=VALUE; "true"/"false" are booleans
    bool trace = false;
    std::optional<std::string> deviceFile;  // describes an evdev recording's device
};

// Prints one JSON line per gesture, trace line, run, posted event, detection and log entry;
// returns the exit status.
int replayThroughEngine(std::istream& input, const std::string& name, const EngineReplayOptions& options);

}  // namespace ostrelle::cli
