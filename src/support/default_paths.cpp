#include "support/default_paths.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <vector>

namespace ostrelle {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view folderName = "Ostrelle";

// Without any home the files go to the working directory rather than to the root of the disk.
fs::path home(const EnvironmentLookup& environment) {
    const auto value = environment("HOME");
    return value && !value->empty() ? fs::path(*value) : fs::path();
}

// The base directory rules: a variable counts only when set to an absolute path; relative ones
// are to be ignored, since they would depend on where the program was started.
fs::path xdgBase(const EnvironmentLookup& environment, std::string_view variable, const fs::path& fallback) {
    if (const auto value = environment(variable); value && !value->empty()) {
        fs::path base(*value);
        if (base.is_absolute()) return base;
    }
    return home(environment) / fallback;
}

std::optional<std::string> homeFromPasswordDatabase() {
    long suggested = ::sysconf(_SC_GETPW_R_SIZE_MAX);
    std::vector<char> buffer(suggested > 0 ? static_cast<std::size_t>(suggested) : 16384);
    passwd entry{};
    passwd* found = nullptr;
    if (::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || found == nullptr) {
        return std::nullopt;
    }
    if (found->pw_dir == nullptr) return std::nullopt;
    return std::string(found->pw_dir);
}

}  // namespace

fs::path defaultBindingsPath(const EnvironmentLookup& environment, PathConvention convention) {
    switch (convention) {
        case PathConvention::xdg:
            return xdgBase(environment, "XDG_CONFIG_HOME", ".config") / folderName / "bindings.json";
        case PathConvention::appleLibrary:
            return home(environment) / "Library" / "Application Support" / folderName / "bindings.json";
    }
    return {};
}

fs::path defaultLogPath(const EnvironmentLookup& environment, PathConvention convention) {
    switch (convention) {
        case PathConvention::xdg:
            return xdgBase(environment, "XDG_STATE_HOME", fs::path(".local") / "state") / folderName /
                   "Ostrelle.log";
        case PathConvention::appleLibrary:
            return home(environment) / "Library" / "Logs" / folderName / "Ostrelle.log";
    }
    return {};
}

EnvironmentLookup processEnvironment() {
    return [](std::string_view name) -> std::optional<std::string> {
        const std::string key(name);
        if (const char* value = std::getenv(key.c_str()); value != nullptr && *value != '\0') return value;
        if (name == "HOME") return homeFromPasswordDatabase();
        return std::nullopt;
    };
}

}  // namespace ostrelle
