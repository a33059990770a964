#include "testing/scratch_home.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace ostrelle::testing {
namespace {

namespace fs = std::filesystem;

struct Folder {
    std::string_view variable;
    std::string_view name;
};

// The system-wide lists (XDG_DATA_DIRS, XDG_CONFIG_DIRS) are pointed here too: read-only for a
// program, but whatever it finds there should be what the test put there.
constexpr std::array folders{
    Folder{"HOME", "home"},
    Folder{"XDG_CONFIG_HOME", "config"},
    Folder{"XDG_STATE_HOME", "state"},
    Folder{"XDG_DATA_HOME", "data"},
    Folder{"XDG_CACHE_HOME", "cache"},
    Folder{"XDG_RUNTIME_DIR", "runtime"},
    Folder{"XDG_DATA_DIRS", "data-dirs"},
    Folder{"XDG_CONFIG_DIRS", "config-dirs"},
};

}  // namespace

ScratchHome::ScratchHome() {
    if (root_.path().empty()) ADD_FAILURE() << "cannot make a scratch home";
    for (const Folder& folder : folders) {
        const fs::path path = root_ / folder.name;
        fs::create_directory(path);
        variables_.emplace_back(folder.variable, path);
    }
    fs::create_directory(temporaryFolder());
    // The runtime folder must be the user's alone.
    fs::permissions(root_ / "runtime", fs::perms::owner_all);
}

EnvironmentLookup ScratchHome::lookup() const {
    return [variables = variables_](std::string_view name) -> std::optional<std::string> {
        const auto found = std::find_if(variables.begin(), variables.end(),
                                        [&](const auto& variable) { return variable.first == name; });
        if (found == variables.end()) return std::nullopt;
        return found->second.string();
    };
}

void ScratchHome::enter() const {
    for (const auto& [variable, path] : variables_) ::setenv(variable.c_str(), path.c_str(), 1);
}

std::vector<fs::path> ScratchHome::touched() const {
    std::vector<fs::path> found;
    for (const auto& [variable, folder] : variables_) {
        std::error_code ignored;
        for (const auto& entry : fs::recursive_directory_iterator(folder, ignored)) {
            if (!entry.is_directory() || fs::is_empty(entry.path(), ignored)) found.push_back(entry.path());
        }
    }
    return found;
}

void ScratchHome::clear() const {
    for (const auto& [variable, folder] : variables_) {
        std::error_code ignored;
        for (const auto& entry : fs::directory_iterator(folder, ignored))
            fs::remove_all(entry.path(), ignored);
    }
}

}  // namespace ostrelle::testing
