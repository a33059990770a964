#include "platform/linux/linux_system_port.h"

namespace ostrelle {

std::optional<std::string> LinuxSystemPort::frontmostApplicationID() {
    if (!parts_.activeWindowClass) return std::nullopt;
    const auto window = parts_.activeWindowClass();
    if (!window) return std::nullopt;
    // Some programs put their name in the class, others in the instance. Apps the per-application
    // rules don't know keep their class, which matches no rule.
    if (auto id = parts_.actions.applicationID(window->className)) return id;
    if (auto id = parts_.actions.applicationID(window->instanceName)) return id;
    return window->className;
}

void LinuxSystemPort::openApplication(const std::string& path) {
    if (parts_.openApplication) parts_.openApplication(path);
}

}  // namespace ostrelle
