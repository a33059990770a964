#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace ostrelle {

// Reads one environment variable; nothing when it is not set.
using EnvironmentLookup = std::function<std::optional<std::string>(std::string_view name)>;

// Where a desktop keeps per-user files: the XDG base directories, or the Apple user Library.
enum class PathConvention { xdg, appleLibrary };

#if defined(__APPLE__)
inline constexpr PathConvention nativePathConvention = PathConvention::appleLibrary;
#else
inline constexpr PathConvention nativePathConvention = PathConvention::xdg;
#endif

// The bindings file: $XDG_CONFIG_HOME/Ostrelle/bindings.json (~/.config when unset), or
// ~/Library/Application Support/Ostrelle/bindings.json.
std::filesystem::path defaultBindingsPath(const EnvironmentLookup& environment,
                                          PathConvention convention = nativePathConvention);

// The log file: $XDG_STATE_HOME/Ostrelle/Ostrelle.log (~/.local/state when unset), or
// ~/Library/Logs/Ostrelle/Ostrelle.log.
std::filesystem::path defaultLogPath(const EnvironmentLookup& environment,
                                     PathConvention convention = nativePathConvention);

// This process's environment. HOME falls back to the password database when it is not set,
// as it is not for some services started by the system.
EnvironmentLookup processEnvironment();

}  // namespace ostrelle
