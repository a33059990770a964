#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <regex>
#include <string>
#include <vector>

#include "cli/cli_runner.h"
#include "recognition/recording.h"

namespace ostrelle {
namespace {

using testing::CLIResult;
using testing::runCLI;
using testing::TempDir;
using Lines = std::vector<std::string>;

std::string lines(const std::vector<RecordingEvent>& events) {
    std::string text;
    for (const RecordingEvent& event : events) text += recordingLine(event) + "\n";
    return text;
}

// A three-finger tap, four fingers of which two lift together and then the rest too slowly,
// and a four-finger click.
std::string tapsAndClick() {
    return "# taps and a click\n\n" +
           lines({
               RecordedFrame{0, {{1, 0.4, 0.5}, {2, 0.5, 0.5}, {3, 0.6, 0.5}}},
               RecordedFrame{0.1, {}},
               RecordedFrame{1.0, {{1, 0.3, 0.5}, {2, 0.4, 0.5}, {3, 0.5, 0.5}, {4, 0.6, 0.5}}},
               RecordedFrame{1.1, {{1, 0.3, 0.5}, {2, 0.4, 0.5}}},
               RecordedFrame{1.6, {}},
               RecordedFrame{2.0, {{1, 0.4, 0.5}, {2, 0.5, 0.5}, {3, 0.6, 0.5}, {4, 0.7, 0.5}}},
               RecordedClick{2.05, false},
               RecordedFrame{2.1, {}},
           });
}

// Three fingers drawing an "L": down 0.3, then right 0.3, in steps of 0.03 every 20 ms.
std::string threeFingerEll() {
    constexpr int steps = 10;
    constexpr double step = 0.03;
    constexpr double frameTime = 0.02;
    std::vector<RecordingEvent> events;
    auto frame = [&](double dx, double dy) {
        const double t = static_cast<double>(events.size()) * frameTime;
        events.push_back(
            RecordedFrame{t, {{1, 0.3 + dx, 0.2 + dy}, {2, 0.4 + dx, 0.2 + dy}, {3, 0.5 + dx, 0.2 + dy}}});
    };
    for (int k = 0; k <= steps; ++k) frame(0, step * k);
    for (int k = 1; k <= steps; ++k) frame(step * k, step * steps);
    events.push_back(RecordedFrame{static_cast<double>(events.size()) * frameTime, {}});
    return lines(events);
}

TEST(ReplayCommand, PrintsGesturesAndTracesInFileOrder) {
    const TempDir dir;
    const std::string file = dir.write("taps.jsonl", tapsAndClick()).string();

    const CLIResult plain = runCLI({"replay", file});
    EXPECT_EQ(plain.status, 0);
    EXPECT_EQ(plain.err, "");
    EXPECT_EQ(plain.outLines(),
              (Lines{R"({"t": 0.1, "gesture": "3.tap"})", R"({"t": 2.05, "gesture": "4.click"})"}));

    const CLIResult traced = runCLI({"replay", "--trace", file});
    EXPECT_EQ(traced.status, 0);
    EXPECT_EQ(
        traced.outLines(),
        (Lines{
            R"x({"t": 0.1, "trace": "rest+tap (3 fingers) rejected: rest held 0.000 s before the tap (min 0.15)"})x",
            R"({"t": 0.1, "gesture": "3.tap"})",
            R"({"t": 1.1, "trace": "2 fingers lifted in one frame"})",
            R"({"t": 1.6, "trace": "4-finger tap rejected: held 0.60 s"})",
            R"({"t": 2.05, "gesture": "4.click"})",
        }));

    // "-" reads the same recording from standard input.
    EXPECT_EQ(runCLI({"replay", "-"}, tapsAndClick()).out, plain.out);
}

TEST(ReplayCommand, StopsAtTheFirstBadLineKeepingWhatWasPrinted) {
    const TempDir dir;
    const std::string good =
        lines({RecordedFrame{0, {{1, 0.4, 0.5}, {2, 0.5, 0.5}, {3, 0.6, 0.5}}}, RecordedFrame{0.1, {}}});
    const std::string tapAfter =
        lines({RecordedFrame{5, {{1, 0.4, 0.5}, {2, 0.5, 0.5}, {3, 0.6, 0.5}}}, RecordedFrame{5.1, {}}});
    struct Row {
        const char* name;
        const char* line;
        const char* error;
    };
    const Row rows[] = {
        {"touch with a fractional id", R"({"t": 1, "touches": [[1.5, 0.4, 0.5]]})",
         "touch 0: id must be an integer"},
        {"time going back", R"({"t": 0.05, "click": false})", "time 0.05 is before the previous event's 0.1"},
        {"not JSON", R"({"t": 1, "touches": )", "not valid JSON"},
        {"no event", R"({"t": 1})", R"(has neither "touches" nor "click")"},
    };
    for (const Row& row : rows) {
        const std::string file = dir.write("bad.jsonl", good + "\n" + row.line + "\n" + tapAfter).string();
        const CLIResult result = runCLI({"replay", file});
        EXPECT_EQ(result.status, 2) << row.name;
        EXPECT_EQ(result.outLines(), (Lines{R"({"t": 0.1, "gesture": "3.tap"})"})) << row.name;
        EXPECT_EQ(result.err, "error: " + file + ":4: " + row.error + "\n") << row.name;
    }

    const CLIResult piped = runCLI({"replay", "-"}, "{\"t\": 1, \"click\": 1}\n");
    EXPECT_EQ(piped.status, 2);
    EXPECT_EQ(piped.err, "error: <stdin>:1: \"click\" must be true or false\n");
}

TEST(ReplayCommand, RecordsNewShapesAndMatchesLoadedOnes) {
    const TempDir dir;
    const std::string ell = dir.write("ell.jsonl", threeFingerEll()).string();

    // Without shapes in play the stroke's first leg is a plain swipe.
    EXPECT_EQ(runCLI({"replay", ell}).outLines(), (Lines{R"({"t": 0.08, "gesture": "3.swipe.down"})"}));

    const CLIResult recorded = runCLI({"replay", ell, "--recording-shapes"});
    ASSERT_EQ(recorded.status, 0) << recorded.err;
    ASSERT_EQ(recorded.outLines().size(), 1u);
    const std::string line = recorded.outLines()[0];
    EXPECT_TRUE(
        std::regex_match(line, std::regex(R"(\{"t": 0\.42, "gesture": "3\.custom\.[0-9A-F-]{36}", )"
                                          R"("custom": \{"name": "", "fingers": 3, "path": \[\[.*\]\]\}\})")))
        << line;

    // Named and handed back through --custom, the same drawing fires that gesture.
    nlohmann::json output = nlohmann::json::parse(line);
    output["custom"]["name"] = "Ell";
    const nlohmann::json shapes =
        nlohmann::json::array({{{"id", output["gesture"]}, {"custom", output["custom"]}}});
    const std::string shapesFile = dir.write("shapes.json", shapes.dump()).string();
    const CLIResult matched = runCLI({"replay", ell, "--custom", shapesFile});
    ASSERT_EQ(matched.status, 0) << matched.err;
    ASSERT_EQ(matched.outLines().size(), 1u);
    const nlohmann::json fired = nlohmann::json::parse(matched.outLines()[0]);
    EXPECT_EQ(fired["gesture"], output["gesture"]);
    EXPECT_EQ(fired["custom"], output["custom"]);
}

TEST(ReplayCommand, RefusesMissingFilesAndBadShapeFiles) {
    const TempDir dir;
    const std::string recording = dir.write("tap.jsonl", tapsAndClick()).string();
    const std::string missing = (dir.path() / "missing.jsonl").string();

    const CLIResult noFile = runCLI({"replay", missing});
    EXPECT_EQ(noFile.status, 2);
    EXPECT_EQ(noFile.err, "error: cannot open " + missing + ": No such file or directory\n");

    const CLIResult folder = runCLI({"replay", dir.path().string()});
    EXPECT_EQ(folder.status, 2);
    EXPECT_EQ(folder.err, "error: " + dir.path().string() + ": is a directory\n");

    struct Row {
        const char* name;
        const char* contents;
        const char* error;
    };
    const Row rows[] = {
        {"not JSON", "[\n  {\"id\": }\n]", "not valid JSON (line 2)"},
        {"cut short", "[\n{", "not valid JSON (line 2)"},
        {"number beyond a double", "[1e999]", "not valid JSON (a number is out of range)"},
        {"not an array", R"({"id": "3.custom.A"})", "expected a JSON array of custom gestures"},
        {"bare id", R"(["3.tap"])", R"([0]: expected a gesture with a "custom" shape)"},
        {"id not a string", R"([{"id": 3, "custom": {}}])", "[0].id: expected a string"},
        {"shape missing strokes",
         R"([{"id": "3.custom.A", "custom": {"name": "a", "fingers": 3, "path": []}},
             {"id": "3.custom.B", "custom": {"name": "b", "fingers": 3, "path": []}}])",
         R"([0].custom: missing "strokes")"},
        {"bad point in the second",
         R"([{"id": "3.custom.A", "custom": {"name": "a", "fingers": 3, "path": [], "strokes": []}},
             {"id": "3.custom.B", "custom": {"name": "b", "fingers": 3, "path": [[0]], "strokes": []}}])",
         "[1].custom.path[0]: expected a point [x, y]"},
    };
    for (const Row& row : rows) {
        const std::string shapes = dir.write("shapes.json", row.contents).string();
        const CLIResult result = runCLI({"replay", recording, "--custom", shapes});
        EXPECT_EQ(result.status, 2) << row.name;
        EXPECT_EQ(result.out, "") << row.name;
        EXPECT_EQ(result.err, "error: " + shapes + ": " + row.error + "\n") << row.name;
    }
}

TEST(ReplayCommand, ExplainsBadUsage) {
    const std::vector<std::vector<std::string>> badUsages{
        {"replay"},
        {"replay", "a.jsonl", "b.jsonl"},
        {"replay", "a.jsonl", "--fast"},
        {"replay", "a.jsonl", "--custom"},
        {"replay", "a.jsonl", "--custom", "x.json", "--custom", "y.json"},
    };
    for (const auto& arguments : badUsages) {
        const CLIResult result = runCLI(arguments);
        EXPECT_EQ(result.status, 2) << arguments.back();
        EXPECT_EQ(result.out, "") << arguments.back();
        EXPECT_TRUE(result.err.starts_with("error: ")) << result.err;
        EXPECT_NE(result.err.find("\nusage: ostrelle-cli replay FILE"), std::string::npos) << result.err;
    }
    const CLIResult help = runCLI({"replay", "--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_TRUE(help.out.starts_with("usage: ostrelle-cli replay FILE [--trace] [--custom SHAPES.json]"))
        << help.out;
}

}  // namespace
}  // namespace ostrelle
