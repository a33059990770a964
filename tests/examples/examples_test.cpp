// The bundled example recordings: each replays to exactly the gestures its header promises,
// together they show every enabled gesture, and the generator reproduces them byte for byte.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>

#include "gestures/gesture_catalog.h"
#include "testing/temporary_folder.h"

namespace ostrelle::testing {
namespace {

namespace fs = std::filesystem;

const fs::path examplesFolder = fs::path(OSTRELLE_SOURCE_DIR) / "examples";

std::vector<fs::path> exampleRecordings() {
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(examplesFolder)) {
        if (entry.path().extension() == ".jsonl") files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

// The ids of the "# expect: " lines, in order.
std::vector<std::string> expectedIDs(const fs::path& recording) {
    constexpr std::string_view expectMark = "# expect: ";
    std::vector<std::string> ids;
    for (const std::string& line : readLines(recording)) {
        if (line.starts_with(expectMark)) ids.push_back(line.substr(expectMark.size()));
    }
    return ids;
}

// Standard output and exit status of a shell command; the paths given never hold a quote.
std::pair<int, std::string> runCommand(const std::string& command) {
    std::string output;
    FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) return {-1, output};
    char buffer[4096];
    for (std::size_t n = 0; (n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;) output.append(buffer, n);
    return {pclose(pipe), output};
}

std::string quoted(const fs::path& path) {
    return "'" + path.string() + "'";
}

class Example : public ::testing::TestWithParam<fs::path> {};

TEST_P(Example, StartsWithADescriptionAndReplaysToTheExpectedGesturesInOrder) {
    const std::vector<std::string> lines = readLines(GetParam());
    ASSERT_FALSE(lines.empty());
    EXPECT_TRUE(lines[0].starts_with("# ") && !lines[0].starts_with("# expect:")) << "a description";
    fs::path shapes = GetParam();
    std::string command = std::string(OSTRELLE_CLI_PATH) + " replay " + quoted(GetParam());
    if (fs::exists(shapes.replace_extension(".shapes.json"))) command += " --custom " + quoted(shapes);
    const auto [status, output] = runCommand(command);
    ASSERT_EQ(status, 0) << output;
    std::vector<std::string> printed;
    std::istringstream outputLines(output);
    for (std::string line; std::getline(outputLines, line);) {
        const auto object = nlohmann::json::parse(line);
        if (object.contains("gesture")) printed.push_back(object.at("gesture"));
    }
    EXPECT_FALSE(printed.empty());
    EXPECT_EQ(printed, expectedIDs(GetParam())) << output;
}

INSTANTIATE_TEST_SUITE_P(Bundled, Example, ::testing::ValuesIn(exampleRecordings()),
                         [](const ::testing::TestParamInfo<fs::path>& row) {
                             std::string name = row.param.stem().string();
                             std::replace(name.begin(), name.end(), '-', '_');
                             return name;
                         });

TEST(Examples, TogetherShowEveryEnabledGestureAndACustomShape) {
    std::set<std::string> shown;
    for (const auto& recording : exampleRecordings()) {
        for (const std::string& id : expectedIDs(recording)) shown.insert(id);
    }
    for (const std::string& id : GestureCatalog::enabled()) EXPECT_TRUE(shown.contains(id)) << id;
    EXPECT_TRUE(std::any_of(shown.begin(), shown.end(),
                            [](const std::string& id) { return id.find(".custom.") != std::string::npos; }));
}

TEST(Examples, RegeneratingReproducesTheFilesByteForByte) {
    const TemporaryFolder folder;
    ASSERT_EQ(runCommand(std::string(OSTRELLE_MAKE_EXAMPLES_PATH) + " " + quoted(folder.path())).first, 0);
    std::set<std::string> generated;
    for (const auto& entry : fs::directory_iterator(folder.path())) {
        const std::string name = entry.path().filename().string();
        generated.insert(name);
        EXPECT_EQ(readText(entry.path()), readText(examplesFolder / name)) << name << " differs";
    }
    std::set<std::string> bundled;
    for (const auto& entry : fs::directory_iterator(examplesFolder)) {
        if (entry.is_regular_file()) bundled.insert(entry.path().filename().string());
    }
    EXPECT_EQ(generated, bundled) << "every bundled recording comes from the generator";
}

}  // namespace
}  // namespace ostrelle::testing
