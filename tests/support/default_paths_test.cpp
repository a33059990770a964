#include "support/default_paths.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <sstream>

#include "testing/scratch_home.h"

namespace ostrelle {
namespace {

// `environment` is the whole environment, as NAME=value words.
EnvironmentLookup lookupIn(const std::string& environment) {
    return [environment](std::string_view name) -> std::optional<std::string> {
        std::istringstream words(environment);
        for (std::string word; words >> word;) {
            if (word.starts_with(name) && word.size() > name.size() && word[name.size()] == '=')
                return word.substr(name.size() + 1);
        }
        return std::nullopt;
    };
}

TEST(DefaultPaths, FollowTheConventionAndTheEnvironment) {
    constexpr PathConvention xdg = PathConvention::xdg;
    const std::string homeBindings = "/home/ada/.config/Ostrelle/bindings.json";
    const std::string homeLog = "/home/ada/.local/state/Ostrelle/Ostrelle.log";
    const struct {
        PathConvention convention;
        std::string environment, bindings, log;
    } rows[] = {
        {xdg, "HOME=/home/ada", homeBindings, homeLog},
        {xdg, "HOME=/home/ada XDG_CONFIG_HOME=/c", "/c/Ostrelle/bindings.json", homeLog},
        {xdg, "XDG_CONFIG_HOME=/c XDG_STATE_HOME=/s", "/c/Ostrelle/bindings.json",
         "/s/Ostrelle/Ostrelle.log"},
        {xdg, "HOME=/home/ada XDG_CONFIG_HOME= XDG_STATE_HOME=", homeBindings, homeLog},  // empty is unset
        {xdg, "HOME=/home/ada XDG_CONFIG_HOME=c XDG_STATE_HOME=./s", homeBindings, homeLog},  // relative
        {xdg, "", ".config/Ostrelle/bindings.json", ".local/state/Ostrelle/Ostrelle.log"},
        {PathConvention::appleLibrary, "HOME=/Users/ada XDG_CONFIG_HOME=/c",
         "/Users/ada/Library/Application Support/Ostrelle/bindings.json",
         "/Users/ada/Library/Logs/Ostrelle/Ostrelle.log"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(defaultBindingsPath(lookupIn(row.environment), row.convention), row.bindings)
            << row.environment;
        EXPECT_EQ(defaultLogPath(lookupIn(row.environment), row.convention), row.log) << row.environment;
    }
}

// The test binary's own default paths lead into its guarded scratch home, where a write is found.
TEST(ProcessEnvironment, InTestsLeadsIntoTheGuardedHome) {
    const testing::ScratchHome& guarded = testing::guardedHome();
    const std::filesystem::path written[] = {
        defaultBindingsPath(processEnvironment()),
        std::filesystem::path(*processEnvironment()("HOME")) / ".profile"};
    for (const auto& file : written) {
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file) << "x";
    }
    auto found = guarded.touched();
    std::sort(found.begin(), found.end());
    EXPECT_EQ(found, (std::vector<std::filesystem::path>{written[0], written[1]}));
    guarded.clear();  // as the guard does after failing a test
    EXPECT_TRUE(guarded.touched().empty());
    EXPECT_EQ(defaultLogPath(processEnvironment()), guarded.logFile());
}

}  // namespace
}  // namespace ostrelle
