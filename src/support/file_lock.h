#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace ostrelle {

// An advisory lock (flock) on a lock file, held from construction to destruction: what makes a
// read-modify-write of a shared file one step for every process that takes the same lock. The
// lock file itself stays; it holds nothing and costs nothing, and removing it would race.
class FileLock {
  public:
    enum class Mode { wait, tryOnce };

    explicit FileLock(const std::filesystem::path& lockFile, Mode mode = Mode::wait);
    ~FileLock();
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

    bool isHeld() const { return fd_ >= 0; }
    // Why the lock is not held (empty when another process holds it under Mode::tryOnce).
    const std::string& error() const { return error_; }

  private:
    int fd_ = -1;
    std::string error_;
};

}  // namespace ostrelle
