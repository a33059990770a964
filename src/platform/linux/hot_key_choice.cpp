#include "platform/linux/hot_key_choice.h"

#include "platform/linux/portal_hot_key_registrar.h"
#include "platform/linux/x11_hot_key_registrar.h"

namespace ostrelle {
namespace {

bool isSet(const EnvironmentLookup& environment, std::string_view name) {
    const std::optional<std::string> value = environment(name);
    return value && !value->empty();
}

}  // namespace

std::unique_ptr<HotKeyRegistrar> chooseHotKeyRegistrar(const EnvironmentLookup& environment,
                                                       X11Connection* x11, EpollMainQueue& queue) {
    const bool wayland = environment("XDG_SESSION_TYPE") == "wayland" ||
                         (!isSet(environment, "DISPLAY") && isSet(environment, "WAYLAND_DISPLAY"));
    // Under Wayland, DISPLAY names XWayland, whose grabs see only keys typed into X11 windows.
    if (!wayland && isSet(environment, "DISPLAY") && x11 != nullptr) {
        return std::make_unique<X11HotKeyRegistrar>(*x11);
    }
    if (wayland) {
        if (auto portal = PortalHotKeyRegistrar::open(queue, environment)) return portal;
    }
    return std::make_unique<UnavailableHotKeyRegistrar>();
}

}  // namespace ostrelle
