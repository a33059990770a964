#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "platform/linux/epoll_main_queue.h"
#include "support/default_paths.h"
#include "support/file_lock.h"

namespace ostrelle {

// The requests one instance answers on its socket, one line each; the reply is one line too.
namespace instance_requests {
inline constexpr std::string_view quit = "quit";
inline constexpr std::string_view toggle = "toggle";
inline constexpr std::string_view status = "status";
inline constexpr std::string_view open = "open";  // show the main window, where there is one
}  // namespace instance_requests

// How long a newcomer waits for the running instance to quit, and a client for a reply.
constexpr std::chrono::milliseconds instanceTimeLimit{5000};

// $XDG_RUNTIME_DIR/ostrelle, or /tmp/ostrelle-UID where no runtime folder is set (a service
// started outside a login session); created as the user's alone. A description of the failure
// when it cannot be made or belongs to someone else.
std::variant<std::filesystem::path, std::string> instanceFolder(const EnvironmentLookup& environment);

// Sends one request to the running instance; nothing when none runs (no socket, or a stale one).
std::optional<std::string> askInstance(const std::filesystem::path& folder, std::string_view request);

// The running instance's end: holds the instance lock for its life and answers requests on the
// queue's thread. Only one process holds it at a time; the lock, not the socket file, says who.
class InstanceServer {
  public:
    using Handler = std::function<std::string(const std::string& request)>;
    static constexpr std::string_view socketName = "ostrelle.sock";
    static constexpr std::string_view lockName = "instance.lock";

    // Asks a running instance to quit, waits for it (bounded), and takes its place; a stale
    // socket left by one that died is replaced. The failure's description otherwise.
    static std::variant<std::unique_ptr<InstanceServer>, std::string> takeOver(
        EpollMainQueue& queue, const std::filesystem::path& folder, Handler handler);
    // Removes the socket. A connection that asked us to quit stays open until the process ends,
    // which is how the asker learns that we are gone.
    ~InstanceServer();
    InstanceServer(const InstanceServer&) = delete;
    InstanceServer& operator=(const InstanceServer&) = delete;

  private:
    InstanceServer(EpollMainQueue& queue, std::filesystem::path socket, std::unique_ptr<FileLock> lock,
                   int listener, Handler handler);
    void acceptClients();
    void readRequest(int client);
    void drop(int client);

    EpollMainQueue& queue_;
    std::filesystem::path socket_;
    std::unique_ptr<FileLock> lock_;
    int listener_;
    Handler handler_;
    std::map<int, std::string> pending_;  // client → what it sent so far
};

}  // namespace ostrelle
