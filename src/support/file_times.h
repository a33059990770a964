#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string_view>

#include "support/log_clock.h"

namespace ostrelle {

// What the log's roll-over needs to know about a file.
struct FileTimes {
    std::uintmax_t size = 0;
    SystemTime modified;
    std::optional<SystemTime> born;  // absent where the file system keeps no creation time
};

// The file's size and times, or nothing when it cannot be read (most often: it does not exist).
std::optional<FileTimes> readFileTimes(const std::filesystem::path& file);

// When a log file was created. The file system's birth time when it has one; otherwise the stamp
// the first line begins with, since a log file is created by its first line; failing that, the
// last modification, which is never earlier than the creation.
SystemTime creationTime(const FileTimes& times, std::string_view firstLine);

}  // namespace ostrelle
