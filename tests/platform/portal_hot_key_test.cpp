#include <gio/gio.h>
#include <gtest/gtest.h>

#include <string>

#include "platform/linux/hot_key_choice.h"
#include "platform/linux/portal_hot_key_registrar.h"

namespace ostrelle {
namespace {

// A Wayland session whose private bus (GIO's test bus, which activates no services) holds no
// desktop portal: the toggle key must come out unavailable, not hang or fail.
TEST(PortalHotKey, WithoutAPortalOnTheBusNoShortcutIsAvailable) {
    GTestDBus* bus = g_test_dbus_new(G_TEST_DBUS_NONE);
    g_test_dbus_up(bus);
    const std::string address = g_test_dbus_get_bus_address(bus);
    const EnvironmentLookup wayland = [&](std::string_view name) -> std::optional<std::string> {
        if (name == "XDG_SESSION_TYPE") return "wayland";
        if (name == "DBUS_SESSION_BUS_ADDRESS") return address;
        return std::nullopt;
    };
    EpollMainQueue queue;
    EXPECT_EQ(PortalHotKeyRegistrar::open(queue, wayland), nullptr);
    EXPECT_EQ(chooseHotKeyRegistrar(wayland, nullptr, queue)->registerHotKey(0x11, 0x1800).status,
              HotKeyRegistrar::unavailable);
    g_test_dbus_down(bus);
    g_object_unref(bus);
}

}  // namespace
}  // namespace ostrelle
