#include "support/default_paths.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <sstream>

#include "testing/scratch_home.h"

namespace ostrelle {
namespace {

struct PathCase {
    const char* name;
    PathConvention convention;
    std::string environment;  // the whole environment, as NAME=value words
    const char* bindings;
    const char* log;

    friend void PrintTo(const PathCase& row, std::ostream* out) { *out << row.name; }
};

class DefaultPaths : public ::testing::TestWithParam<PathCase> {};

TEST_P(DefaultPaths, FollowTheConventionAndTheEnvironment) {
    const EnvironmentLookup environment = [&](std::string_view name) -> std::optional<std::string> {
        std::istringstream words(GetParam().environment);
        for (std::string word; words >> word;) {
            if (word.starts_with(name) && word.size() > name.size() && word[name.size()] == '=')
                return word.substr(name.size() + 1);
        }
        return std::nullopt;
    };
    EXPECT_EQ(defaultBindingsPath(environment, GetParam().convention), GetParam().bindings);
    EXPECT_EQ(defaultLogPath(environment, GetParam().convention), GetParam().log);
}

constexpr PathConvention xdg = PathConvention::xdg;
constexpr const char* homeBindings = "/home/ada/.config/Ostrelle/bindings.json";
constexpr const char* homeLog = "/home/ada/.local/state/Ostrelle/Ostrelle.log";

INSTANTIATE_TEST_SUITE_P(
    Rows, DefaultPaths,
    ::testing::Values(PathCase{"homeOnly", xdg, "HOME=/home/ada", homeBindings, homeLog},
                      PathCase{"configOnly", xdg, "HOME=/home/ada XDG_CONFIG_HOME=/c",
                               "/c/Ostrelle/bindings.json", homeLog},
                      PathCase{"bothWithoutHome", xdg, "XDG_CONFIG_HOME=/c XDG_STATE_HOME=/s",
                               "/c/Ostrelle/bindings.json", "/s/Ostrelle/Ostrelle.log"},
                      PathCase{"emptyIsUnset", xdg,
                               "HOME=/home/ada XDG_CONFIG_HOME= XDG_STATE_HOME=", homeBindings, homeLog},
                      PathCase{"relativeIsIgnored", xdg,
                               "HOME=/home/ada XDG_CONFIG_HOME=c XDG_STATE_HOME=./s", homeBindings, homeLog},
                      PathCase{"nothingAtAll", xdg, "", ".config/Ostrelle/bindings.json",
                               ".local/state/Ostrelle/Ostrelle.log"},
                      PathCase{"appleIgnoresXDG", PathConvention::appleLibrary,
                               "HOME=/Users/ada XDG_CONFIG_HOME=/c",
                               "/Users/ada/Library/Application Support/Ostrelle/bindings.json",
                               "/Users/ada/Library/Logs/Ostrelle/Ostrelle.log"}),
    [](const ::testing::TestParamInfo<PathCase>& row) { return std::string(row.param.name); });

TEST(ProcessEnvironment, AlwaysKnowsAHomeAndNothingElseMadeUp) {
#if !defined(__APPLE__)
    EXPECT_EQ(nativePathConvention, PathConvention::xdg);  // the default everywhere but on macOS
#endif
    EXPECT_FALSE(processEnvironment()("HOME").value_or("").empty());
    EXPECT_FALSE(processEnvironment()("OSTRELLE_SURELY_UNSET_VARIABLE").has_value());
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
