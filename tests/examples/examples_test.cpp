// The bundled example recordings: each replays to exactly the gestures its header promises,
// together they show every enabled gesture, and the generator reproduces them byte for byte.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <regex>
#include <set>
#include <sstream>

#include "examples/example_files.h"
#include "gestures/gesture_catalog.h"
#include "recognition/recording.h"

namespace ostrelle::testing {
namespace {

// The gesture ids a replay printed, in order: the "gesture" member of its output lines.
std::vector<std::string> printedIDs(const std::string& output) {
    std::vector<std::string> ids;
    std::istringstream lines(output);
    std::string line;
    while (std::getline(lines, line)) {
        const auto printed = nlohmann::json::parse(line);
        if (printed.contains("gesture")) ids.push_back(printed.at("gesture"));
    }
    return ids;
}

std::vector<std::string> shapeIDs(const std::filesystem::path& shapesFile) {
    std::vector<std::string> ids;
    for (const auto& gesture : nlohmann::json::parse(readText(shapesFile))) ids.push_back(gesture.at("id"));
    return ids;
}

std::string replayCommand(const std::filesystem::path& recording) {
    std::string command = std::string(OSTRELLE_CLI_PATH) + " replay " + quoted(recording);
    if (std::filesystem::exists(shapesFileOf(recording)))
        command += " --custom " + quoted(shapesFileOf(recording));
    return command;
}

class Example : public ::testing::TestWithParam<std::filesystem::path> {};

TEST_P(Example, ReplaysToTheExpectedGesturesInOrder) {
    const ExampleHeader header = readHeader(GetParam());
    const CommandResult replay = runCommand(replayCommand(GetParam()));
    ASSERT_EQ(replay.status, 0) << replay.output;
    EXPECT_EQ(printedIDs(replay.output), header.expected) << replay.output;
}

TEST_P(Example, StartsWithADescriptionAndPromisesOnlyKnownGestures) {
    const ExampleHeader header = readHeader(GetParam());
    EXPECT_FALSE(header.description.empty());
    ASSERT_FALSE(header.expected.empty());
    std::vector<std::string> customs;
    if (std::filesystem::exists(shapesFileOf(GetParam()))) customs = shapeIDs(shapesFileOf(GetParam()));
    for (const std::string& id : header.expected) {
        const bool isCustom = std::find(customs.begin(), customs.end(), id) != customs.end();
        EXPECT_TRUE(GestureCatalog::enabled().contains(id) || isCustom) << id;
    }
}

TEST_P(Example, IsAValidRecordingWithShortNumbersOnThePad) {
    static const std::regex longFraction(R"(\.\d{5})");
    std::ifstream in(GetParam());
    RecordingReader reader(in);
    std::size_t frames = 0;
    try {
        while (const auto event = reader.next()) {
            const auto* frame = std::get_if<RecordedFrame>(&*event);
            if (frame == nullptr) continue;
            ++frames;
            for (const Contact& c : frame->contacts) {
                EXPECT_TRUE(c.x >= 0 && c.x <= 1 && c.y >= 0 && c.y <= 1) << "line " << reader.line();
            }
        }
    } catch (const RecordingError& error) {
        FAIL() << error.what();
    }
    EXPECT_GT(frames, 0u);
    // Four decimals at most, so the files read well.
    std::ifstream text(GetParam());
    std::string line;
    while (std::getline(text, line)) {
        if (line.starts_with("#")) continue;
        EXPECT_FALSE(std::regex_search(line, longFraction)) << line;
    }
}

INSTANTIATE_TEST_SUITE_P(Bundled, Example, ::testing::ValuesIn(exampleRecordings()),
                         [](const ::testing::TestParamInfo<std::filesystem::path>& row) {
                             std::string name = row.param.stem().string();
                             std::replace(name.begin(), name.end(), '-', '_');
                             return name;
                         });

TEST(Examples, TogetherShowEveryEnabledGesture) {
    std::set<std::string> shown;
    for (const auto& recording : exampleRecordings()) {
        for (const std::string& id : readHeader(recording).expected) shown.insert(id);
    }
    for (const std::string& id : GestureCatalog::enabled()) EXPECT_TRUE(shown.contains(id)) << id;
    EXPECT_TRUE(std::any_of(shown.begin(), shown.end(), [](const std::string& id) {
        return id.find(".custom.") != std::string::npos;
    })) << "a custom shape";
}

TEST(Examples, RegeneratingReproducesTheFilesByteForByte) {
    const TemporaryFolder folder;
    const CommandResult made =
        runCommand(std::string(OSTRELLE_MAKE_EXAMPLES_PATH) + " " + quoted(folder.path()));
    ASSERT_EQ(made.status, 0);

    std::set<std::string> generated;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
        const std::string name = entry.path().filename().string();
        generated.insert(name);
        EXPECT_EQ(readText(entry.path()), readText(examplesFolder() / name))
            << name << " differs from the generator's";
    }
    std::set<std::string> bundled;
    for (const auto& entry : std::filesystem::directory_iterator(examplesFolder())) {
        if (entry.is_regular_file()) bundled.insert(entry.path().filename().string());
    }
    EXPECT_EQ(generated, bundled) << "every bundled recording comes from the generator";
}

}  // namespace
}  // namespace ostrelle::testing
