#include "cli/recording_loop.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <streambuf>

#include "cli/commands.h"
#include "cli/evdev_replay.h"
#include "cli/output.h"

namespace ostrelle::cli {

namespace {

// The lines already read to tell the format, then the rest of the input: standard input cannot
// be rewound.
class RejoinedInput : public std::streambuf {
  public:
    RejoinedInput(std::string head, std::streambuf& rest) : head_(std::move(head)), rest_(rest) {
        setg(head_.data(), head_.data(), head_.data() + head_.size());
    }

  private:
    // Takes what has arrived without waiting for more: a replay from a pipe acts on each line
    // as it comes.
    int_type underflow() override {
        const int_type first = rest_.sbumpc();
        if (traits_type::eq_int_type(first, traits_type::eof())) return first;
        buffer_[0] = traits_type::to_char_type(first);
        std::streamsize count = 1;
        const std::streamsize ready = std::min(rest_.in_avail(), std::streamsize(buffer_.size()) - 1);
        if (ready > 0) count += rest_.sgetn(buffer_.data() + 1, ready);
        setg(buffer_.data(), buffer_.data(), buffer_.data() + count);
        return first;
    }

    std::string head_;
    std::streambuf& rest_;
    std::array<char, 0x10000> buffer_{};
};

// Reads lines up to the first that tells the format; they stay in `head`.
RecordingFormat readFormat(std::istream& input, std::string& head) {
    std::string line;
    while (std::getline(input, line)) {
        head += line;
        if (!input.eof()) head += '\n';
        if (const auto format = formatShownBy(line)) return *format;
    }
    return RecordingFormat::jsonLines;
}

int forEachJsonEvent(std::istream& input, const std::string& name,
                     const std::function<void(const RecordingEvent&)>& handle) {
    RecordingReader reader(input);
    try {
        while (const auto event = reader.next()) handle(*event);
    } catch (const RecordingError& error) {
        printError(fmt::format("{}:{}: {}", name, error.line(), error.problem()));
        return exitBadInput;
    } catch (const std::runtime_error& error) {
        printError(fmt::format("{}: {}", name, error.what()));
        return exitBadInput;
    }
    return exitSuccess;
}

}  // namespace

std::optional<std::ifstream> openRecordingFile(const std::string& file) {
    if (std::filesystem::is_directory(file)) {
        printError(fmt::format("{}: is a directory", file));
        return std::nullopt;
    }
    std::ifstream input(file, std::ios::binary);
    if (!input) {
        printError(fmt::format("cannot open {}: {}", file, std::strerror(errno)));
        return std::nullopt;
    }
    return input;
}

int forEachRecordedEvent(std::istream& input, const std::string& name,
                         const std::optional<std::string>& deviceFile,
                         const std::function<void(const RecordingEvent&)>& handle) {
    std::string head;
    const RecordingFormat format = readFormat(input, head);
    if (input.bad()) {
        printError(fmt::format("{}: reading failed", name));
        return exitBadInput;
    }
    RejoinedInput rejoined(std::move(head), *input.rdbuf());
    std::istream whole(&rejoined);
    if (format == RecordingFormat::jsonLines) return forEachJsonEvent(whole, name, handle);
    return forEachAssembledEvent(whole, name, format, deviceFile, handle);
}

}  // namespace ostrelle::cli
