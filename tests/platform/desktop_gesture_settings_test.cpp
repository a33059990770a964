#include "platform/linux/desktop_gesture_settings.h"

#include <gio/gio.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <future>
#include <map>
#include <string>
#include <thread>

#include "testing/temporary_folder.h"

namespace ostrelle {
namespace {

using Variables = std::map<std::string, std::string, std::less<>>;

DesktopGestureSettings readWith(const Variables& variables) {
    return readDesktopGestureSettings([&](std::string_view name) -> std::optional<std::string> {
        const auto found = variables.find(name);
        return found == variables.end() ? std::nullopt : std::optional(found->second);
    });
}

// A stand-in GNOME Shell on a private session bus (GIO's test bus), telling `version` as its
// ShellVersion property. It answers on a thread of its own while the reader's call waits.
class FakeShell {
  public:
    explicit FakeShell(std::string version) : version_(std::move(version)) {
        g_test_dbus_up(bus_);
        std::promise<bool> ready;
        auto started = ready.get_future();
        thread_ = std::thread([this, &ready] { serve(ready); });
        EXPECT_TRUE(started.get()) << "the stand-in shell did not take its name";
    }
    ~FakeShell() {
        // Through the shell's own context, so that a quit before its loop runs is not lost.
        g_main_context_invoke(
            context_,
            [](gpointer loop) {
                g_main_loop_quit(static_cast<GMainLoop*>(loop));
                return G_SOURCE_REMOVE;
            },
            loop_);
        thread_.join();
        g_main_loop_unref(loop_);
        g_main_context_unref(context_);
        g_test_dbus_down(bus_);
        g_object_unref(bus_);
    }
    FakeShell(const FakeShell&) = delete;
    FakeShell& operator=(const FakeShell&) = delete;

    std::string address() const { return g_test_dbus_get_bus_address(bus_); }

  private:
    static GVariant* property(GDBusConnection*, const gchar*, const gchar*, const gchar*, const gchar*,
                              GError**, gpointer self) {
        return g_variant_new_string(static_cast<FakeShell*>(self)->version_.c_str());
    }

    void serve(std::promise<bool>& ready) {
        g_main_context_push_thread_default(context_);
        GDBusConnection* bus = g_dbus_connection_new_for_address_sync(
            address().c_str(),
            static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                              G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
            nullptr, nullptr, nullptr);
        GDBusNodeInfo* node = g_dbus_node_info_new_for_xml(
            "<node><interface name='org.gnome.Shell'>"
            "<property name='ShellVersion' type='s' access='read'/></interface></node>",
            nullptr);
        const GDBusInterfaceVTable table{nullptr, &FakeShell::property, nullptr, {}};
        GVariant* owned = nullptr;
        if (bus != nullptr && g_dbus_connection_register_object(bus, "/org/gnome/Shell", node->interfaces[0],
                                                                &table, this, nullptr, nullptr) != 0) {
            owned = g_dbus_connection_call_sync(bus, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                                                "org.freedesktop.DBus", "RequestName",
                                                g_variant_new("(su)", "org.gnome.Shell", 0u), nullptr,
                                                G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr);
        }
        ready.set_value(owned != nullptr);
        if (owned != nullptr) {
            g_variant_unref(owned);
            g_main_loop_run(loop_);
        }
        g_dbus_node_info_unref(node);
        if (bus != nullptr) g_object_unref(bus);
        g_main_context_pop_thread_default(context_);
    }

    std::string version_;
    GTestDBus* bus_ = g_test_dbus_new(G_TEST_DBUS_NONE);
    GMainContext* context_ = g_main_context_new();
    GMainLoop* loop_ = g_main_loop_new(context_, FALSE);
    std::thread thread_;
};

TEST(DesktopGestureSettings, AsksTheRunningGnomeShellForItsVersion) {
    const struct {
        const char* version;
        std::optional<int> major;
    } rows[] = {{"3.38.4", 3}, {"46.alpha", 46}, {"unknown", std::nullopt}};
    for (const auto& row : rows) {
        const FakeShell shell(row.version);
        EXPECT_EQ(readWith({{"XDG_CURRENT_DESKTOP", "GNOME"}, {"DBUS_SESSION_BUS_ADDRESS", shell.address()}})
                      .gnomeShellMajor,
                  row.major)
            << row.version;
    }
}

TEST(DesktopGestureSettings, ReadsTheDesktopAndItsTapToClick) {
    testing::TemporaryFolder folder;
    const std::filesystem::path home = folder / "home";
    std::filesystem::create_directories(home / ".config");
    testing::writeText(folder / "kcminputrc", "[Libinput][1][2][Touchpad]\nTapToClick=true\n");
    testing::writeText(home / ".config" / "kcminputrc", "[Libinput][1][2][Touchpad]\nTapToClick=false\n");
    const struct {
        const char* name;
        Variables variables;
        LinuxDesktop desktop;
        bool tapToClick;
    } rows[] = {
        {"kcminputrc in XDG_CONFIG_HOME",
         {{"XDG_CURRENT_DESKTOP", "KDE"}, {"XDG_CONFIG_HOME", folder.path().string()}},
         LinuxDesktop::kde,
         true},
        {"a relative XDG_CONFIG_HOME does not count: ~/.config",
         {{"XDG_CURRENT_DESKTOP", "KDE"}, {"XDG_CONFIG_HOME", "config"}, {"HOME", home.string()}},
         LinuxDesktop::kde,
         false},
        {"no desktop reads nothing",
         {{"XDG_CONFIG_HOME", folder.path().string()}},
         LinuxDesktop::other,
         false},
        // The test process sees no GNOME schema, and the bus is not there: the defaults, at once.
        {"GNOME without its schema or bus",
         {{"XDG_CURRENT_DESKTOP", "GNOME"},
          {"DBUS_SESSION_BUS_ADDRESS", "unix:path=" + (folder / "bus").string()}},
         LinuxDesktop::gnome,
         false},
    };
    for (const auto& row : rows) {
        const DesktopGestureSettings settings = readWith(row.variables);
        EXPECT_EQ(settings.desktop, row.desktop) << row.name;
        EXPECT_EQ(settings.tapToClick, row.tapToClick) << row.name;
        EXPECT_EQ(settings.gnomeShellMajor, std::nullopt) << row.name;
    }
}

}  // namespace
}  // namespace ostrelle
