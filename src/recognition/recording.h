#pragma once

#include <cstddef>
#include <iosfwd>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "recognition/contact.h"

namespace ostrelle {

// A recording (replay file) is JSON Lines, one event per line, times in seconds:
//   {"t": 12.345, "touches": [[id, x, y], ...]}   a touch frame (empty: every finger lifted)
//   {"t": 12.4, "click": false}                  a physical click (true: over our own window)
// Blank lines and lines starting with '#' are ignored. Times never decrease.

struct RecordedFrame {
    double time = 0;
    std::vector<Contact> contacts;

    friend bool operator==(const RecordedFrame&, const RecordedFrame&) = default;
};

struct RecordedClick {
    double time = 0;
    bool overOwnWindow = false;

    friend bool operator==(const RecordedClick&, const RecordedClick&) = default;
};

using RecordingEvent = std::variant<RecordedFrame, RecordedClick>;

double timeOf(const RecordingEvent& event);

// A bad line: its number (from 1) and what is wrong with it.
class RecordingError : public std::runtime_error {
  public:
    RecordingError(std::size_t line, const std::string& problem)
        : std::runtime_error("line " + std::to_string(line) + ": " + problem),
          line_(line),
          problem_(problem) {}

    std::size_t line() const { return line_; }
    const std::string& problem() const { return problem_; }

  private:
    std::size_t line_;
    std::string problem_;
};

// Reads events one line at a time, so a long recording is never held whole and a replay can
// act on every event before a later bad line stops it.
class RecordingReader {
  public:
    explicit RecordingReader(std::istream& input) : input_(input) {}

    // The next event, or nothing at the end of the input. Throws RecordingError for a bad line
    // and std::runtime_error when the input cannot be read.
    std::optional<RecordingEvent> next();

    // The number of the line last read (0 before the first).
    std::size_t line() const { return line_; }

  private:
    std::istream& input_;
    std::size_t line_ = 0;
    std::optional<double> previousTime_;
    std::string text_;
};

// One event as one line of a recording, without the line end.
std::string recordingLine(const RecordingEvent& event);
// Writes one event and its line end.
void writeRecordingEvent(std::ostream& output, const RecordingEvent& event);

}  // namespace ostrelle
