#include "platform/linux/session_bus_address.h"

#include <gio/gio.h>

#include <filesystem>

namespace ostrelle {

std::optional<std::string> sessionBusAddress(const EnvironmentLookup& environment) {
    if (auto address = environment("DBUS_SESSION_BUS_ADDRESS"); address && !address->empty()) return address;
    const auto runtime = environment("XDG_RUNTIME_DIR");
    if (!runtime || runtime->empty()) return std::nullopt;
    const std::filesystem::path socket = std::filesystem::path(*runtime) / "bus";
    std::error_code error;
    if (!std::filesystem::is_socket(socket, error)) return std::nullopt;
    gchar* escaped = g_dbus_address_escape_value(socket.c_str());
    std::string address = std::string("unix:path=") + escaped;
    g_free(escaped);
    return address;
}

}  // namespace ostrelle
