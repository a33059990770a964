#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <systemd/sd-bus.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <chrono>
#include <fstream>
#include <future>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "platform/linux/hot_key_choice.h"
#include "platform/linux/hot_key_modifiers.h"
#include "platform/linux/portal_hot_key_registrar.h"
#include "testing/temporary_folder.h"

namespace ostrelle {
namespace {

constexpr auto waitLimit = std::chrono::seconds(10);

// A private session bus: dbus-daemon on a socket of its own, stopped when this goes away. Its
// own configuration keeps it out of the runtime folder, where the session one adds service files.
class SessionBus {
  public:
    SessionBus() {
        const std::string config = (folder_.path() / "bus.conf").string();
        std::ofstream(config) << "<busconfig><type>session</type><listen>unix:dir=" << folder_.path().string()
                              << "</listen><policy context=\"default\"><allow send_destination=\"*\"/>"
                                 "<allow receive_sender=\"*\"/><allow own=\"*\"/></policy></busconfig>";
        std::array<int, 2> pipeEnds{};
        if (pipe2(pipeEnds.data(), O_CLOEXEC) != 0) throw std::runtime_error("cannot make a pipe");
        pid_ = fork();
        if (pid_ == 0) {
            dup2(pipeEnds[1], 3);
            const std::string configOption = "--config-file=" + config;
            execlp("dbus-daemon", "dbus-daemon", configOption.c_str(), "--nofork", "--nopidfile",
                   "--print-address=3", static_cast<char*>(nullptr));
            _exit(127);
        }
        close(pipeEnds[1]);
        pollfd readable{pipeEnds[0], POLLIN, 0};
        const auto deadline = std::chrono::steady_clock::now() + waitLimit;
        while (address_.empty() || address_.back() != '\n') {
            const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
                deadline - std::chrono::steady_clock::now());
            if (left.count() <= 0 || poll(&readable, 1, static_cast<int>(left.count())) <= 0) break;
            std::array<char, 256> chunk{};
            const ssize_t got = read(pipeEnds[0], chunk.data(), chunk.size());
            if (got <= 0) break;
            address_.append(chunk.data(), static_cast<std::size_t>(got));
        }
        close(pipeEnds[0]);
        if (address_.empty() || address_.back() != '\n')
            throw std::runtime_error("dbus-daemon did not come up");
        address_.pop_back();
    }
    ~SessionBus() {
        kill(pid_, SIGTERM);
        waitpid(pid_, nullptr, 0);
    }
    const std::string& address() const { return address_; }

  private:
    testing::TemporaryFolder folder_;
    pid_t pid_ = -1;
    std::string address_;
};

// The desktop's side, on a thread of its own: a portal that makes every session asked for, binds
// every shortcut, and presses it once right after binding, as a user would.
class StandInPortal {
  public:
    StandInPortal(const std::string& address, bool offersShortcuts) : offersShortcuts_(offersShortcuts) {
        if (sd_bus_new(&bus_) < 0 || sd_bus_set_address(bus_, address.c_str()) < 0 ||
            sd_bus_set_bus_client(bus_, 1) < 0 || sd_bus_start(bus_) < 0) {
            throw std::runtime_error("the stand-in portal cannot reach the bus");
        }
        if (offersShortcuts_ &&
            sd_bus_add_object_vtable(bus_, nullptr, "/org/freedesktop/portal/desktop",
                                     "org.freedesktop.portal.GlobalShortcuts", table, this) < 0) {
            throw std::runtime_error("cannot serve the stand-in portal");
        }
        sd_bus_add_fallback(bus_, nullptr, "/org/freedesktop/portal/desktop/session", onSession, this);
        if (sd_bus_request_name(bus_, "org.freedesktop.portal.Desktop", 0) < 0) {
            throw std::runtime_error("cannot own the portal's name");
        }
        thread_ = std::thread([this] {
            while (!stop_) {
                while (sd_bus_process(bus_, nullptr) > 0) {
                }
                sd_bus_wait(bus_, 20000);  // µs; lets the thread see stop_
            }
        });
    }
    ~StandInPortal() {
        stop_ = true;
        thread_.join();
        sd_bus_flush_close_unref(bus_);
    }

    std::vector<std::string> triggers() {
        std::lock_guard lock(mutex_);
        return triggers_;
    }
    std::future<void> closed() { return closed_.get_future(); }

  private:
    static std::string senderPart(sd_bus_message* message) {
        std::string part;
        for (const char* c = sd_bus_message_get_sender(message); *c != '\0'; ++c) {
            if (*c != ':') part += *c == '.' ? '_' : *c;
        }
        return part;
    }
    // The value of `key` in the a{sv} of strings next in the message.
    static std::string option(sd_bus_message* message, const std::string& key) {
        std::string value;
        sd_bus_message_enter_container(message, 'a', "{sv}");
        while (sd_bus_message_enter_container(message, 'e', "sv") > 0) {
            const char* name = nullptr;
            const char* text = nullptr;
            sd_bus_message_read(message, "s", &name);
            sd_bus_message_read(message, "v", "s", &text);
            if (key == name) value = text;
            sd_bus_message_exit_container(message);
        }
        sd_bus_message_exit_container(message);
        return value;
    }
    static int respond(sd_bus_message* call, const std::string& request) {
        sd_bus_reply_method_return(call, "o", request.c_str());
        sd_bus_emit_signal(sd_bus_message_get_bus(call), request.c_str(), "org.freedesktop.portal.Request",
                           "Response", "ua{sv}", 0u, 0);
        return 1;
    }
    static int createSession(sd_bus_message* call, void*, sd_bus_error*) {
        const std::string token = option(call, "handle_token");
        return respond(call, "/org/freedesktop/portal/desktop/request/" + senderPart(call) + "/" + token);
    }
    static int bindShortcuts(sd_bus_message* call, void* self, sd_bus_error*) {
        auto& portal = *static_cast<StandInPortal*>(self);
        const char* session = nullptr;
        const char* id = nullptr;
        sd_bus_message_read(call, "o", &session);
        const std::string sessionPath = session;
        sd_bus_message_enter_container(call, 'a', "(sa{sv})");
        sd_bus_message_enter_container(call, 'r', "sa{sv}");
        sd_bus_message_read(call, "s", &id);
        const std::string shortcut = id;
        const std::string trigger = option(call, "preferred_trigger");
        sd_bus_message_exit_container(call);
        sd_bus_message_exit_container(call);
        const char* parent = nullptr;
        sd_bus_message_read(call, "s", &parent);
        const std::string token = option(call, "handle_token");
        {
            std::lock_guard lock(portal.mutex_);
            portal.triggers_.push_back(trigger);
        }
        respond(call, "/org/freedesktop/portal/desktop/request/" + senderPart(call) + "/" + token);
        sd_bus_emit_signal(sd_bus_message_get_bus(call), "/org/freedesktop/portal/desktop",
                           "org.freedesktop.portal.GlobalShortcuts", "Activated", "osta{sv}",
                           sessionPath.c_str(), shortcut.c_str(), std::uint64_t{0}, 0);
        return 1;
    }
    static int onSession(sd_bus_message* message, void* self, sd_bus_error*) {
        if (!sd_bus_message_is_method_call(message, "org.freedesktop.portal.Session", "Close")) return 0;
        static_cast<StandInPortal*>(self)->closed_.set_value();
        sd_bus_reply_method_return(message, "");
        return 1;
    }
    static int version(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply, void*,
                       sd_bus_error*) {
        return sd_bus_message_append(reply, "u", 1u);
    }

    static constexpr sd_bus_vtable table[] = {
        SD_BUS_VTABLE_START(0),
        SD_BUS_METHOD("CreateSession", "a{sv}", "o", createSession, 0),
        SD_BUS_METHOD("BindShortcuts", "oa(sa{sv})sa{sv}", "o", bindShortcuts, 0),
        SD_BUS_PROPERTY("version", "u", version, 0, SD_BUS_VTABLE_PROPERTY_CONST),
        SD_BUS_VTABLE_END,
    };

    bool offersShortcuts_;
    sd_bus* bus_ = nullptr;
    std::atomic<bool> stop_ = false;
    std::thread thread_;
    std::mutex mutex_;
    std::vector<std::string> triggers_;
    std::promise<void> closed_;
};

EnvironmentLookup waylandSession(const std::string& busAddress) {
    return [busAddress](std::string_view name) -> std::optional<std::string> {
        if (name == "XDG_SESSION_TYPE") return "wayland";
        if (name == "DBUS_SESSION_BUS_ADDRESS") return busAddress;
        return std::nullopt;
    };
}

TEST(PortalHotKey, WithoutThePortalOrItsInterfaceNoShortcutIsAvailable) {
    SessionBus bus;
    EpollMainQueue queue;
    EXPECT_EQ(PortalHotKeyRegistrar::open(queue, waylandSession(bus.address())), nullptr) << "no portal";
    StandInPortal portal(bus.address(), false);
    auto registrar = chooseHotKeyRegistrar(waylandSession(bus.address()), nullptr, queue);
    EXPECT_EQ(registrar->registerHotKey(0x11, 0x1800).status, HotKeyRegistrar::unavailable) << "no interface";
}

TEST(PortalHotKey, BindsThePreferredTriggerAndPressesArriveOnTheQueue) {
    SessionBus bus;
    StandInPortal portal(bus.address(), true);
    EpollMainQueue queue;
    auto registrar = PortalHotKeyRegistrar::open(queue, waylandSession(bus.address()));
    ASSERT_NE(registrar, nullptr);
    int presses = 0;
    registrar->setPressHandler([&] {
        ++presses;
        queue.quit();
    });
    EXPECT_EQ(registrar->registerHotKey(0x3F, 0x1000).status, hot_key::noSuchKey);
    const auto registration = registrar->registerHotKey(0x11, 0x1000 | 0x800 | 0x200 | 0x100);
    ASSERT_EQ(registration.status, HotKeyRegistrar::success);
    std::promise<void> ended;
    auto guard = std::async(std::launch::async, [&queue, done = ended.get_future()] {
        if (done.wait_for(waitLimit) == std::future_status::timeout) queue.quit();
    });
    queue.run();
    ended.set_value();
    EXPECT_EQ(presses, 1);
    EXPECT_EQ(portal.triggers(), std::vector<std::string>{"CTRL+ALT+SHIFT+LOGO+t"});
    auto closed = portal.closed();
    registrar->unregisterHotKey(*registration.reference);
    EXPECT_EQ(closed.wait_for(waitLimit), std::future_status::ready) << "the session was not closed";
}

}  // namespace
}  // namespace ostrelle
