#include "recognition/recording.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace ostrelle {
namespace {

std::vector<RecordingEvent> readAll(const std::string& text) {
    std::istringstream input(text);
    RecordingReader reader(input);
    std::vector<RecordingEvent> events;
    while (auto event = reader.next()) events.push_back(std::move(*event));
    return events;
}

// "line N: problem" for the first bad line, or "" when the whole text reads.
std::string failureOf(const std::string& text) {
    try {
        readAll(text);
    } catch (const RecordingError& error) {
        return error.what();
    }
    return "";
}

TEST(Recording, ReadsFramesAndClicksSkippingBlanksAndComments) {
    const std::string text =
        "# three fingers tap\n"
        "\n"
        "{\"t\": 12.345, \"touches\": [[1, 0.5, 0.25], [-7, 0, 1], [9007199254740993, 0.1, 0.2]]}\r\n"
        "   \n"
        "  # indented comment\n"
        "{\"touches\": [], \"t\": 12.4, \"extra\": \"ignored\"}\n"
        "{\"t\": 12.4, \"click\": true}\n"
        "{\"t\": 13, \"click\": false}";  // no final line end
    const std::vector<RecordingEvent> expected{
        RecordedFrame{12.345, {{1, 0.5, 0.25}, {-7, 0, 1}, {9007199254740993, 0.1, 0.2}}},
        RecordedFrame{12.4, {}},
        RecordedClick{12.4, true},
        RecordedClick{13, false},
    };
    EXPECT_EQ(readAll(text), expected);
}

TEST(Recording, NamesTheBadLineAndWhatIsWrong) {
    struct Row {
        const char* name;
        const char* line;
        const char* error;
    };
    const Row rows[] = {
        {"not JSON", "{\"t\": 1, \"touches\": [}", "not valid JSON"},
        {"trailing garbage", "{\"t\": 1, \"click\": false} x", "not valid JSON"},
        {"not an object", "[1, 2]", "expected a JSON object"},
        {"no time", "{\"touches\": []}", "missing \"t\""},
        {"time as text", "{\"t\": \"1\", \"touches\": []}", "\"t\" must be a number"},
        {"time beyond a double", "{\"t\": 1e999, \"touches\": []}", "number out of range"},
        {"neither kind", "{\"t\": 2}", "has neither \"touches\" nor \"click\""},
        {"both kinds", "{\"t\": 2, \"touches\": [], \"click\": false}", "has both \"touches\" and \"click\""},
        {"click as number", "{\"t\": 2, \"click\": 0}", "\"click\" must be true or false"},
        {"touches not a list", "{\"t\": 2, \"touches\": {}}", "\"touches\" must be an array"},
        {"touch of two", "{\"t\": 2, \"touches\": [[1, 0.5, 0.5], [2, 0.5]]}",
         "touch 1: expected [id, x, y]"},
        {"fractional id", "{\"t\": 2, \"touches\": [[1.5, 0.5, 0.5]]}", "touch 0: id must be an integer"},
        {"id too large", "{\"t\": 2, \"touches\": [[9223372036854775808, 0.5, 0.5]]}",
         "touch 0: id must be an integer"},
        {"x as null", "{\"t\": 2, \"touches\": [[1, null, 0.5]]}", "touch 0: x must be a finite number"},
        {"y as text", "{\"t\": 2, \"touches\": [[1, 0.5, \"0.5\"]]}", "touch 0: y must be a finite number"},
        {"same id twice", "{\"t\": 2, \"touches\": [[4, 0.1, 0.1], [4, 0.2, 0.2]]}",
         "touch 1: id 4 appears twice"},
    };
    for (const Row& row : rows) {
        const std::string text =
            "# ok so far\n{\"t\": 1, \"touches\": [[1, 0.5, 0.5]]}\n" + std::string(row.line) + "\n";
        EXPECT_EQ(failureOf(text), "line 3: " + std::string(row.error)) << row.name;
    }
}

TEST(Recording, AllowsEqualTimesButNotGoingBack) {
    EXPECT_EQ(failureOf("{\"t\": 1, \"touches\": []}\n{\"t\": 1, \"click\": false}\n"), "");
    EXPECT_EQ(failureOf("{\"t\": 1.5, \"touches\": []}\n\n# gap\n{\"t\": 1.25, \"click\": false}\n"),
              "line 4: time 1.25 is before the previous event's 1.5");
    // A bad line does not count as the previous time: the error is the line's own.
    std::istringstream input("{\"t\": 5, \"touches\": []}\n{\"t\": 9}\n{\"t\": 6, \"touches\": []}\n");
    RecordingReader reader(input);
    ASSERT_TRUE(reader.next().has_value());
    EXPECT_THROW(reader.next(), RecordingError);
}

TEST(Recording, WritesOneLineThatReadsBack) {
    const RecordingEvent frame = RecordedFrame{12.345, {{1, 0.5, 0.25}, {-3, 0.1, 1.0 / 3.0}}};
    const RecordingEvent lifted = RecordedFrame{12.4, {}};
    const RecordingEvent click = RecordedClick{12.4, false};
    EXPECT_EQ(recordingLine(frame),
              R"({"t": 12.345, "touches": [[1, 0.5, 0.25], [-3, 0.1, 0.3333333333333333]]})");
    EXPECT_EQ(recordingLine(lifted), R"({"t": 12.4, "touches": []})");
    EXPECT_EQ(recordingLine(click), R"({"t": 12.4, "click": false})");

    std::ostringstream output;
    for (const RecordingEvent& event : {frame, lifted, click}) writeRecordingEvent(output, event);
    EXPECT_EQ(readAll(output.str()), (std::vector<RecordingEvent>{frame, lifted, click}));
}

}  // namespace
}  // namespace ostrelle
