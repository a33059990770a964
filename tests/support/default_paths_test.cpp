#include "support/default_paths.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>

#include "testing/scratch_home.h"

namespace ostrelle {
namespace {

// An environment made of exactly the given variables.
EnvironmentLookup environmentOf(std::map<std::string, std::string, std::less<>> variables) {
    return [variables = std::move(variables)](std::string_view name) -> std::optional<std::string> {
        const auto it = variables.find(name);
        if (it == variables.end()) return std::nullopt;
        return it->second;
    };
}

struct PathCase {
    const char* name;
    std::map<std::string, std::string, std::less<>> variables;
    const char* bindings;
    const char* log;

    // Names the row in test output instead of dumping its bytes.
    friend void PrintTo(const PathCase& row, std::ostream* out) { *out << row.name; }
};

class DefaultPathsXDG : public ::testing::TestWithParam<PathCase> {};

TEST_P(DefaultPathsXDG, FollowsTheBaseDirectories) {
    const auto environment = environmentOf(GetParam().variables);
    EXPECT_EQ(defaultBindingsPath(environment, PathConvention::xdg), GetParam().bindings);
    EXPECT_EQ(defaultLogPath(environment, PathConvention::xdg), GetParam().log);
}

INSTANTIATE_TEST_SUITE_P(
    Linux, DefaultPathsXDG,
    ::testing::Values(
        PathCase{"homeOnly",
                 {{"HOME", "/home/ada"}},
                 "/home/ada/.config/Ostrelle/bindings.json",
                 "/home/ada/.local/state/Ostrelle/Ostrelle.log"},
        PathCase{"bothVariables",
                 {{"HOME", "/home/ada"}, {"XDG_CONFIG_HOME", "/cfg"}, {"XDG_STATE_HOME", "/var/ada/state"}},
                 "/cfg/Ostrelle/bindings.json",
                 "/var/ada/state/Ostrelle/Ostrelle.log"},
        PathCase{"configOnly",
                 {{"HOME", "/home/ada"}, {"XDG_CONFIG_HOME", "/cfg"}},
                 "/cfg/Ostrelle/bindings.json",
                 "/home/ada/.local/state/Ostrelle/Ostrelle.log"},
        PathCase{"emptyVariablesCountAsUnset",
                 {{"HOME", "/home/ada"}, {"XDG_CONFIG_HOME", ""}, {"XDG_STATE_HOME", ""}},
                 "/home/ada/.config/Ostrelle/bindings.json",
                 "/home/ada/.local/state/Ostrelle/Ostrelle.log"},
        PathCase{"relativeVariablesAreIgnored",
                 {{"HOME", "/home/ada"}, {"XDG_CONFIG_HOME", "cfg"}, {"XDG_STATE_HOME", "./state"}},
                 "/home/ada/.config/Ostrelle/bindings.json",
                 "/home/ada/.local/state/Ostrelle/Ostrelle.log"},
        PathCase{"noHomeButVariables",
                 {{"XDG_CONFIG_HOME", "/cfg"}, {"XDG_STATE_HOME", "/st"}},
                 "/cfg/Ostrelle/bindings.json",
                 "/st/Ostrelle/Ostrelle.log"},
        PathCase{"nothingAtAll", {}, ".config/Ostrelle/bindings.json", ".local/state/Ostrelle/Ostrelle.log"}),
    [](const ::testing::TestParamInfo<PathCase>& row) { return std::string(row.param.name); });

TEST(DefaultPathsApple, LiveInTheUserLibraryAndIgnoreXDG) {
    const auto environment =
        environmentOf({{"HOME", "/Users/ada"}, {"XDG_CONFIG_HOME", "/cfg"}, {"XDG_STATE_HOME", "/st"}});
    EXPECT_EQ(defaultBindingsPath(environment, PathConvention::appleLibrary),
              "/Users/ada/Library/Application Support/Ostrelle/bindings.json");
    EXPECT_EQ(defaultLogPath(environment, PathConvention::appleLibrary),
              "/Users/ada/Library/Logs/Ostrelle/Ostrelle.log");
}

TEST(DefaultPathsNative, MatchesThePlatform) {
    const auto environment = environmentOf({{"HOME", "/h"}});
#if defined(__APPLE__)
    EXPECT_EQ(defaultLogPath(environment), "/h/Library/Logs/Ostrelle/Ostrelle.log");
#else
    EXPECT_EQ(defaultLogPath(environment), "/h/.local/state/Ostrelle/Ostrelle.log");
#endif
}

TEST(ProcessEnvironment, AlwaysKnowsAHome) {
    const auto home = processEnvironment()("HOME");
    ASSERT_TRUE(home.has_value());
    EXPECT_FALSE(home->empty());
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
