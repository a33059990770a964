#include "support/log_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>

#include "support/file_times.h"
#include "support/log.h"
#include "support/log_time_stamp.h"

namespace ostrelle {
namespace {

namespace fs = std::filesystem;

constexpr int newFileMode = 0644;              // the user's umask still applies
constexpr std::size_t stampPrefixLength = 64;  // bytes; longer than any stamp, to find the first one

// Only asked when the file system keeps no birth time, so the extra read is rare.
std::string firstBytes(const fs::path& file) {
    const int fd = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return {};
    std::array<char, stampPrefixLength> buffer{};
    const ssize_t count = ::read(fd, buffer.data(), buffer.size());
    ::close(fd);
    return count > 0 ? std::string(buffer.data(), static_cast<std::size_t>(count)) : std::string();
}

void writeAll(int fd, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = ::write(fd, text.data(), text.size());
        if (written < 0) {
            if (errno == EINTR) continue;
            return;
        }
        text.remove_prefix(static_cast<std::size_t>(written));
    }
}

}  // namespace

std::string_view levelWord(LogLevel level) {
    switch (level) {
        case LogLevel::error:
            return "ERROR";
        case LogLevel::warning:
            return "WARN";
    }
    return "";
}

std::string logLine(SystemTime time, std::chrono::seconds utcOffset, LogLevel level,
                    std::string_view message) {
    std::string line = formatLogTimeStamp(time, utcOffset);
    line += ' ';
    line += levelWord(level);
    line += ' ';
    line += message;
    line += '\n';
    return line;
}

fs::path backupPathFor(const fs::path& file) {
    fs::path backup = file;
    backup.replace_extension("1.log");
    return backup;
}

void rollOver(const fs::path& file, SystemTime now) {
    const auto maxAge =
        std::chrono::duration_cast<SystemTime::duration>(std::chrono::duration<double>(Log::maxAge));
    const SystemTime cutOff = now - maxAge;
    const fs::path backup = backupPathFor(file);
    std::error_code ignored;

    if (const auto backupTimes = readFileTimes(backup); backupTimes && backupTimes->modified < cutOff) {
        fs::remove(backup, ignored);
    }

    const auto current = readFileTimes(file);
    if (!current) return;
    // A file of exactly the limit stays; only one past it rolls.
    const bool tooBig = current->size > Log::maxFileSize;
    const bool tooOld = !tooBig && creationTime(*current, current->born ? "" : firstBytes(file)) < cutOff;
    if (!tooBig && !tooOld) return;
    fs::remove(backup, ignored);
    fs::rename(file, backup, ignored);
}

void appendToFile(const fs::path& file, std::string_view text) {
    int fd = ::open(file.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC);
    if (fd < 0) fd = ::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, newFileMode);
    if (fd < 0) return;
    writeAll(fd, text);
    ::close(fd);
}

}  // namespace ostrelle
