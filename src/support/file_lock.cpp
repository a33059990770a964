#include "support/file_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <system_error>

namespace ostrelle {

FileLock::FileLock(const std::filesystem::path& lockFile, Mode mode) {
    std::error_code ignored;
    std::filesystem::create_directories(lockFile.parent_path(), ignored);
    const int fd = ::open(lockFile.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (fd < 0) {
        error_ = "cannot open " + lockFile.string() + ": " + std::strerror(errno);
        return;
    }
    const int operation = mode == Mode::wait ? LOCK_EX : LOCK_EX | LOCK_NB;
    int result = 0;
    while ((result = ::flock(fd, operation)) != 0 && errno == EINTR) {
    }
    if (result != 0) {
        if (errno != EWOULDBLOCK) error_ = "cannot lock " + lockFile.string() + ": " + std::strerror(errno);
        ::close(fd);
        return;
    }
    fd_ = fd;
}

FileLock::~FileLock() {
    // Closing the only descriptor releases the lock.
    if (fd_ >= 0) ::close(fd_);
}

}  // namespace ostrelle
