#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "support/log_clock.h"

namespace ostrelle {

enum class LogLevel { error, warning };

// The level word of a line: "ERROR" or "WARN".
std::string_view levelWord(LogLevel level);

// One line of the log file: stamp, space, level word, space, message as given, line feed.
std::string logLine(SystemTime time, std::chrono::seconds utcOffset, LogLevel level,
                    std::string_view message);

// The one older generation: "Ostrelle.log" is backed up as "Ostrelle.1.log".
std::filesystem::path backupPathFor(const std::filesystem::path& file);

// The file operations of the log, done on its writer thread only. Every failure is swallowed:
// logging never reports an error, and a failed write loses that one line.

// Deletes a backup untouched since before the cut-off, then moves the current file over the
// backup when it is too big or was created before the cut-off. The next line starts a new file.
void rollOver(const std::filesystem::path& file, SystemTime now);

// Appends text to the file, creating the file (but not its folder) when it is missing.
// Opened and closed for every line, so that a file moved away by hand is simply started again.
void appendToFile(const std::filesystem::path& file, std::string_view text);

}  // namespace ostrelle
