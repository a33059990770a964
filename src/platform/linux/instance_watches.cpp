#include "platform/linux/instance_watches.h"

namespace ostrelle {

InstanceWatches::InstanceWatches(EpollMainQueue& queue, InstanceService& service,
                                 const std::filesystem::path& settingsFile,
                                 const std::filesystem::path& bindingsFile)
    : settingsFolder_(queue, settingsFile.parent_path(),
                      [&service](const std::string& name) { service.fileChanged(name); }),
      wake_(queue, [&service] { service.engine().systemDidWake(); }) {
    if (bindingsFile.parent_path() != settingsFile.parent_path())
        bindingsFolder_.emplace(queue, bindingsFile.parent_path(),
                                [&service](const std::string& name) { service.fileChanged(name); });
}

}  // namespace ostrelle
