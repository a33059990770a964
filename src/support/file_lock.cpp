#include "support/file_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>

namespace ostrelle {

FolderLock::FolderLock(const std::filesystem::path& folder) {
    std::error_code ignored;
    std::filesystem::create_directories(folder, ignored);
    fd_ = ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd_ < 0) return;
    int result = 0;
    do {
        result = ::flock(fd_, LOCK_EX);
    } while (result != 0 && errno == EINTR);
    if (result != 0) {
        ::close(fd_);
        fd_ = -1;
    }
}

FolderLock::~FolderLock() {
    // Closing the descriptor releases the lock.
    if (fd_ >= 0) ::close(fd_);
}

}  // namespace ostrelle
