#pragma once

#include <filesystem>

namespace ostrelle {

// An advisory lock held on a folder for as long as this object lives, so that processes that
// read, change and rewrite a file in it take turns. Locking the folder rather than the file
// survives the atomic rename that replaces the file. Blocks until the lock is free. When the
// folder cannot be opened or locked it holds nothing: the caller goes on unlocked, as it did
// before locks existed, rather than failing the user's change.
class FolderLock {
  public:
    explicit FolderLock(const std::filesystem::path& folder);
    ~FolderLock();
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

    bool isHeld() const { return fd_ >= 0; }

  private:
    int fd_ = -1;
};

}  // namespace ostrelle
