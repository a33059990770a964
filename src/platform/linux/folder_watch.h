#pragma once

#include <filesystem>
#include <functional>
#include <string>

#include "platform/linux/epoll_main_queue.h"

namespace ostrelle {

// Tells, through the queue, the name of each file in one folder that was replaced, written or
// removed: how the service hears that another process changed the settings or the bindings.
// An atomic replace shows up as the rename onto the name. The folder is created when missing.
class FolderWatch {
  public:
    using Handler = std::function<void(const std::string& fileName)>;

    FolderWatch(EpollMainQueue& queue, const std::filesystem::path& folder, Handler onChange);
    ~FolderWatch();
    FolderWatch(const FolderWatch&) = delete;
    FolderWatch& operator=(const FolderWatch&) = delete;

    // False when the kernel would not watch the folder (logged); changes then go unnoticed.
    bool isWatching() const { return fd_ >= 0; }

  private:
    void readEvents();

    EpollMainQueue& queue_;
    Handler onChange_;
    int fd_ = -1;
};

}  // namespace ostrelle
