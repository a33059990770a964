#pragma once

#include <filesystem>
#include <optional>

#include "platform/linux/epoll_main_queue.h"
#include "platform/linux/folder_watch.h"
#include "platform/linux/instance_service.h"
#include "platform/linux/wake_watch.h"

namespace ostrelle {

// What the running instance follows besides its socket: the settings and bindings files when
// another process changes them, and the computer waking from sleep. Both must outlive this.
class InstanceWatches {
  public:
    InstanceWatches(EpollMainQueue& queue, InstanceService& service,
                    const std::filesystem::path& settingsFile, const std::filesystem::path& bindingsFile);

  private:
    FolderWatch settingsFolder_;
    std::optional<FolderWatch> bindingsFolder_;  // when the bindings live elsewhere
    WakeWatch wake_;
};

}  // namespace ostrelle
