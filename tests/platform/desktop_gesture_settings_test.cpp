#include "platform/linux/desktop_gesture_settings.h"

#include <fcntl.h>
#include <gio/gio.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <filesystem>
#include <future>
#include <map>
#include <string>
#include <thread>

#include "testing/temporary_folder.h"

namespace ostrelle {
namespace {

constexpr std::chrono::seconds busStartLimit{20};

// A private session bus (dbus-daemon) on which a stand-in GNOME Shell owns its name and tells
// `version` as its ShellVersion property; both stop when this goes away.
class FakeShellBus {
  public:
    explicit FakeShellBus(std::string version) : version_(std::move(version)) {
        startDaemon();
        // Bounded by GDBus's own time-out for the calls that set it up.
        std::promise<bool> ready;
        auto started = ready.get_future();
        shell_ = std::thread([this, &ready] { runShell(ready); });
        if (!started.get()) ADD_FAILURE() << "the stand-in shell did not come up on " << address_;
    }
    ~FakeShellBus() {
        // Through the shell's own context, so that a quit before its loop runs is not lost.
        g_main_context_invoke(
            context_,
            [](gpointer loop) {
                g_main_loop_quit(static_cast<GMainLoop*>(loop));
                return G_SOURCE_REMOVE;
            },
            loop_);
        if (shell_.joinable()) shell_.join();
        g_main_loop_unref(loop_);
        g_main_context_unref(context_);
        if (daemon_ > 0) {
            ::kill(daemon_, SIGTERM);
            ::waitpid(daemon_, nullptr, 0);
        }
    }
    FakeShellBus(const FakeShellBus&) = delete;
    FakeShellBus& operator=(const FakeShellBus&) = delete;

    const std::string& address() const { return address_; }

  private:
    void startDaemon() {
        std::array<int, 2> ends{};
        ASSERT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
        // Its own configuration: the stock session one makes folders in XDG_RUNTIME_DIR. Receiving
        // needs a rule of its own (the eavesdrop one); without it no reply arrives.
        const std::filesystem::path configuration = folder_ / "bus.conf";
        testing::writeText(configuration,
                           "<busconfig><type>session</type><listen>unix:path=" + (folder_ / "bus").string() +
                               "</listen><auth>EXTERNAL</auth><policy context='default'>"
                               "<allow send_destination='*'/><allow eavesdrop='true'/>"
                               "<allow own='*'/></policy></busconfig>");
        const std::string configurationOption = "--config-file=" + configuration.string();
        daemon_ = ::fork();
        if (daemon_ == 0) {
            ::dup2(ends[1], 3);  // it writes its address here once it listens
            const int quiet = ::open("/dev/null", O_WRONLY);
            ::dup2(quiet, STDERR_FILENO);  // it complains about resource limits it cannot raise
            ::execlp("dbus-daemon", "dbus-daemon", "--nofork", "--nopidfile", "--print-address=3",
                     configurationOption.c_str(), static_cast<char*>(nullptr));
            ::_exit(127);
        }
        ::close(ends[1]);
        pollfd readable{ends[0], POLLIN, 0};
        const auto deadline = std::chrono::steady_clock::now() + busStartLimit;
        while (address_.empty() || address_.back() != '\n') {
            const auto left =
                std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
            if (left.count() <= 0 || ::poll(&readable, 1, static_cast<int>(left.count())) <= 0) break;
            std::array<char, 256> chunk{};
            const ssize_t got = ::read(ends[0], chunk.data(), chunk.size());
            if (got <= 0) break;
            address_.append(chunk.data(), static_cast<std::size_t>(got));
        }
        ::close(ends[0]);
        ASSERT_TRUE(!address_.empty() && address_.back() == '\n') << "dbus-daemon did not come up";
        address_.pop_back();
    }

    static GVariant* property(GDBusConnection*, const gchar*, const gchar*, const gchar*, const gchar* name,
                              GError**, gpointer self) {
        const std::string& version = static_cast<FakeShellBus*>(self)->version_;
        return std::string_view(name) == "ShellVersion" ? g_variant_new_string(version.c_str()) : nullptr;
    }

    void runShell(std::promise<bool>& ready) {
        g_main_context_push_thread_default(context_);
        GDBusConnection* bus = g_dbus_connection_new_for_address_sync(
            address_.c_str(),
            static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                              G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
            nullptr, nullptr, nullptr);
        GDBusNodeInfo* node = g_dbus_node_info_new_for_xml(
            "<node><interface name='org.gnome.Shell'>"
            "<property name='ShellVersion' type='s' access='read'/></interface></node>",
            nullptr);
        const GDBusInterfaceVTable table{nullptr, &FakeShellBus::property, nullptr, {}};
        const bool registered =
            bus != nullptr && g_dbus_connection_register_object(bus, "/org/gnome/Shell", node->interfaces[0],
                                                                &table, this, nullptr, nullptr) != 0;
        GVariant* owned =
            registered ? g_dbus_connection_call_sync(bus, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                                                     "org.freedesktop.DBus", "RequestName",
                                                     g_variant_new("(su)", "org.gnome.Shell", 0u), nullptr,
                                                     G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr)
                       : nullptr;
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
    testing::TemporaryFolder folder_;
    std::string address_;
    pid_t daemon_ = -1;
    GMainContext* context_ = g_main_context_new();
    GMainLoop* loop_ = g_main_loop_new(context_, FALSE);
    std::thread shell_;
};

TEST(DesktopGestureSettings, AsksTheRunningGnomeShellForItsVersion) {
    const FakeShellBus shell("3.38.4");
    const auto settings =
        readDesktopGestureSettings([&](std::string_view name) -> std::optional<std::string> {
            if (name == "XDG_CURRENT_DESKTOP") return "GNOME";
            if (name == "DBUS_SESSION_BUS_ADDRESS") return shell.address();
            return std::nullopt;
        });
    EXPECT_EQ(settings.gnomeShellMajor, 3);
}

TEST(DesktopGestureSettings, GnomeShellMajorVersion) {
    const std::map<std::string, std::optional<int>> rows{
        {"46.2", 46},         {"3.38.4", 3},      {"40.alpha", 40},
        {"47", 47},           {"", std::nullopt}, {"GNOME Shell 45.0", std::nullopt},
        {".5", std::nullopt},
    };
    for (const auto& [text, major] : rows) EXPECT_EQ(gnomeShellMajorFrom(text), major) << text;
}

TEST(DesktopGestureSettings, ReadsTheDesktopAndItsTapToClick) {
    testing::TemporaryFolder folder;
    const std::filesystem::path xdg = folder / "xdg";
    const std::filesystem::path homeConfig = folder / "home" / ".config";
    std::filesystem::create_directories(xdg);
    std::filesystem::create_directories(homeConfig);
    const std::string on = "[Libinput][1][2][Touchpad]\nTapToClick=true\n";
    testing::writeText(xdg / "kcminputrc", on);
    testing::writeText(homeConfig / "kcminputrc", "[Libinput][1][2][Touchpad]\nTapToClick=false\n");

    using Variables = std::map<std::string, std::string, std::less<>>;
    const Variables kdeHome{{"XDG_CURRENT_DESKTOP", "KDE"}, {"HOME", (folder / "home").string()}};
    Variables kdeXdg = kdeHome;
    kdeXdg["XDG_CONFIG_HOME"] = xdg.string();
    Variables kdeRelative = kdeHome;
    kdeRelative["XDG_CONFIG_HOME"] = "xdg";
    const struct {
        const char* name;
        Variables variables;
        LinuxDesktop desktop;
        bool tapToClick;
    } rows[] = {
        {"kcminputrc in XDG_CONFIG_HOME", kdeXdg, LinuxDesktop::kde, true},
        {"else in ~/.config", kdeHome, LinuxDesktop::kde, false},
        {"a relative XDG_CONFIG_HOME does not count", kdeRelative, LinuxDesktop::kde, false},
        {"no desktop reads nothing", {{"XDG_CONFIG_HOME", xdg.string()}}, LinuxDesktop::other, false},
        // The test process sees no GNOME schema and is given no session bus: the defaults, at once.
        {"GNOME without its schema or a bus", {{"XDG_CURRENT_DESKTOP", "GNOME"}}, LinuxDesktop::gnome, false},
        {"a bus that is not there",
         {{"XDG_CURRENT_DESKTOP", "GNOME"},
          {"DBUS_SESSION_BUS_ADDRESS", "unix:path=" + (folder / "bus").string()}},
         LinuxDesktop::gnome,
         false},
    };
    for (const auto& row : rows) {
        const auto settings =
            readDesktopGestureSettings([&](std::string_view name) -> std::optional<std::string> {
                const auto found = row.variables.find(name);
                return found == row.variables.end() ? std::nullopt : std::optional(found->second);
            });
        EXPECT_EQ(settings.desktop, row.desktop) << row.name;
        EXPECT_EQ(settings.tapToClick, row.tapToClick) << row.name;
        EXPECT_EQ(settings.gnomeShellMajor, std::nullopt) << row.name;
    }
}

}  // namespace
}  // namespace ostrelle
