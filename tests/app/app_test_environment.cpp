#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>

#include <QApplication>
#include <chrono>
#include <memory>
#include <optional>

#include "platform/xvfb_server.h"

// Xlib's macros (Status, Bool) last, after every header they would break.
#include <X11/Xlib.h>

extern char** environ;

namespace ostrelle::testing {
namespace {

// Set to run the tray's tests: a private X server with a tray host from the distribution.
constexpr const char* trayVariable = "OSTRELLE_TEST_TRAY";
constexpr std::chrono::seconds trayStartLimit{10};

// trayer on `display`, until it has claimed the tray selection; stopped with the test binary.
class TrayHost {
  public:
    explicit TrayHost(const std::string& display) {
        ::setenv("DISPLAY", display.c_str(), 1);
        char program[] = "trayer";
        char edge[] = "--edge";
        char top[] = "top";
        char* arguments[] = {program, edge, top, nullptr};
        if (::posix_spawnp(&pid_, program, nullptr, nullptr, arguments, environ) != 0)
            throw std::runtime_error("cannot start trayer");
        Display* connection = XOpenDisplay(display.c_str());
        if (!connection) throw std::runtime_error("cannot reach " + display);
        const Atom selection = XInternAtom(connection, "_NET_SYSTEM_TRAY_S0", False);
        const auto limit = std::chrono::steady_clock::now() + trayStartLimit;
        // Nothing announces the claim to a bystander; look again every few milliseconds, bounded.
        while (XGetSelectionOwner(connection, selection) == None) {
            if (std::chrono::steady_clock::now() > limit) throw std::runtime_error("trayer took no tray");
            ::poll(nullptr, 0, 10);
        }
        XCloseDisplay(connection);
    }
    ~TrayHost() {
        ::kill(pid_, SIGTERM);
        ::waitpid(pid_, nullptr, 0);
    }
    TrayHost(const TrayHost&) = delete;
    TrayHost& operator=(const TrayHost&) = delete;

  private:
    pid_t pid_ = -1;
};

// One QApplication for the whole test binary, made after the test main has pointed HOME and the
// XDG folders at scratch folders: on the offscreen platform, or with a tray on a private X server.
class QtApplication final : public ::testing::Environment {
  public:
    void SetUp() override {
        if (std::getenv(trayVariable)) {
            server_.emplace();
            tray_ = std::make_unique<TrayHost>(server_->display());
            qputenv("QT_QPA_PLATFORM", "xcb");
        } else if (qgetenv("QT_QPA_PLATFORM").isEmpty()) {
            qputenv("QT_QPA_PLATFORM", "offscreen");
        }
        application_ = std::make_unique<QApplication>(argc_, argv_);
        QApplication::setQuitOnLastWindowClosed(false);
    }
    void TearDown() override {
        application_.reset();
        tray_.reset();
        server_.reset();
    }

  private:
    int argc_ = 1;
    char name_[16] = "ostrelle-tests";
    char* argv_[2] = {name_, nullptr};
    std::optional<XvfbServer> server_;
    std::unique_ptr<TrayHost> tray_;
    std::unique_ptr<QApplication> application_;
};

[[maybe_unused]] const auto* registered = ::testing::AddGlobalTestEnvironment(new QtApplication);

}  // namespace
}  // namespace ostrelle::testing
