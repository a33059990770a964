#include "platform/linux/linux_system_port.h"

namespace ostrelle {

std::optional<std::string> LinuxSystemPort::frontmostApplicationID() {
    if (!parts_.activeWindowClass) return std::nullopt;
    const auto windowClass = parts_.activeWindowClass();
    if (!windowClass) return std::nullopt;
    // Apps the per-application rules don't know keep their class, which matches no rule.
    return parts_.actions.applicationID(*windowClass).value_or(*windowClass);
}

void LinuxSystemPort::openApplication(const std::string& path) {
    if (parts_.openApplication) parts_.openApplication(path);
}

void LinuxSystemPort::beep() {
    if (parts_.beep) parts_.beep();
}

}  // namespace ostrelle
