#include "support/file_times.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>

#include "support/log_time_stamp.h"

namespace ostrelle {
namespace {

SystemTime timeOf(std::int64_t seconds, std::int64_t nanoseconds) {
    const auto sinceEpoch = std::chrono::seconds{seconds} + std::chrono::nanoseconds{nanoseconds};
    return SystemTime{std::chrono::duration_cast<SystemTime::duration>(sinceEpoch)};
}

std::optional<FileTimes> readWithStat(const std::filesystem::path& file) {
    struct stat info {};
    if (::stat(file.c_str(), &info) != 0) return std::nullopt;
    FileTimes times;
    times.size = static_cast<std::uintmax_t>(info.st_size);
#if defined(__APPLE__)
    times.modified = timeOf(info.st_mtimespec.tv_sec, info.st_mtimespec.tv_nsec);
    times.born = timeOf(info.st_birthtimespec.tv_sec, info.st_birthtimespec.tv_nsec);
#else
    times.modified = timeOf(info.st_mtim.tv_sec, info.st_mtim.tv_nsec);
#endif
    return times;
}

}  // namespace

std::optional<FileTimes> readFileTimes(const std::filesystem::path& file) {
#if defined(__linux__) && defined(STATX_BTIME)
    struct statx info {};
    const unsigned wanted = STATX_SIZE | STATX_MTIME | STATX_BTIME;
    if (::statx(AT_FDCWD, file.c_str(), AT_STATX_SYNC_AS_STAT, wanted, &info) == 0) {
        FileTimes times;
        times.size = info.stx_size;
        times.modified = timeOf(info.stx_mtime.tv_sec, info.stx_mtime.tv_nsec);
        // Only some file systems keep a birth time; the mask says whether this one did. A birth at
        // the epoch itself is a file system that fills the field without knowing it.
        const bool hasBirth =
            (info.stx_mask & STATX_BTIME) != 0 && (info.stx_btime.tv_sec != 0 || info.stx_btime.tv_nsec != 0);
        if (hasBirth) times.born = timeOf(info.stx_btime.tv_sec, info.stx_btime.tv_nsec);
        return times;
    }
    // Kernels before 4.11, and some sandboxes, refuse the call itself; plain stat still works there.
    if (errno != ENOSYS && errno != EPERM) return std::nullopt;
#endif
    return readWithStat(file);
}

SystemTime creationTime(const FileTimes& times, std::string_view firstLine) {
    if (times.born) return *times.born;
    // A stamp later than the last write was made by a wrong clock; the write time bounds it.
    if (const auto stamped = parseLogTimeStamp(firstLine)) return std::min(*stamped, times.modified);
    return times.modified;
}

}  // namespace ostrelle
