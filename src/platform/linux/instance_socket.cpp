#include "platform/linux/instance_socket.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>

namespace ostrelle {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr std::size_t maxRequestLength = 256;  // bytes; the requests are single words
constexpr int listenBacklog = 8;
// While the running instance is between taking the lock and listening, or between closing
// its socket and ending: a short pause before asking again.
constexpr int retryPauseMs = 10;

std::string failure(const std::string& what) {
    return what + ": " + std::strerror(errno);
}

std::optional<sockaddr_un> addressOf(const fs::path& socket) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string text = socket.string();
    if (text.size() >= sizeof address.sun_path) return std::nullopt;
    std::memcpy(address.sun_path, text.c_str(), text.size() + 1);
    return address;
}

int remainingMs(Clock::time_point deadline) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
    return left > 0 ? static_cast<int>(left) : 0;
}

// A connected client socket, or -1 when nothing listens there.
int connectTo(const fs::path& socket) {
    const auto address = addressOf(socket);
    if (!address) return -1;
    const int fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd < 0) return -1;
    if (::connect(fd, reinterpret_cast<const sockaddr*>(&*address), sizeof *address) != 0) {
        ::close(fd);
        return -1;
    }
    return fd;
}

bool sendAll(int fd, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t sent = ::send(fd, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent < 0 && errno == EINTR) continue;
        if (sent <= 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
}

// Reads until the peer closes or the deadline passes; what arrived, and whether it closed.
std::pair<std::string, bool> readToEnd(int fd, Clock::time_point deadline) {
    std::string received;
    for (;;) {
        pollfd wait{fd, POLLIN, 0};
        const int ready = ::poll(&wait, 1, remainingMs(deadline));
        if (ready < 0 && errno == EINTR) continue;
        if (ready <= 0) return {received, false};
        std::array<char, 512> buffer{};
        const ssize_t count = ::read(fd, buffer.data(), buffer.size());
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return {received, true};
        received.append(buffer.data(), static_cast<std::size_t>(count));
    }
}

}  // namespace

std::variant<fs::path, std::string> instanceFolder(const EnvironmentLookup& environment) {
    fs::path folder;
    if (const auto runtime = environment("XDG_RUNTIME_DIR"); runtime && fs::path(*runtime).is_absolute()) {
        folder = fs::path(*runtime) / "ostrelle";
    } else {
        folder = fs::path("/tmp") / ("ostrelle-" + std::to_string(::getuid()));
    }
    if (::mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST)
        return failure("cannot create " + folder.string());
    struct stat info {};
    if (::lstat(folder.c_str(), &info) != 0) return failure("cannot read " + folder.string());
    // In a shared /tmp someone else could have made it first, to listen in on us.
    if (!S_ISDIR(info.st_mode) || info.st_uid != ::getuid())
        return folder.string() + " is not a folder of this user's; remove it";
    if ((info.st_mode & 0077) != 0) ::chmod(folder.c_str(), 0700);
    return folder;
}

std::optional<std::string> askInstance(const fs::path& folder, std::string_view request) {
    const int fd = connectTo(folder / InstanceServer::socketName);
    if (fd < 0) return std::nullopt;
    std::string line(request);
    line += '\n';
    std::optional<std::string> reply;
    if (sendAll(fd, line)) {
        auto [received, closed] = readToEnd(fd, Clock::now() + instanceTimeLimit);
        if (const auto end = received.find('\n'); end != std::string::npos) reply = received.substr(0, end);
    }
    ::close(fd);
    return reply;
}

std::variant<std::unique_ptr<InstanceServer>, std::string> InstanceServer::takeOver(EpollMainQueue& queue,
                                                                                    const fs::path& folder,
                                                                                    Handler handler) {
    const fs::path socket = folder / socketName;
    const auto address = addressOf(socket);
    if (!address) return socket.string() + ": path too long for a socket";
    const auto deadline = Clock::now() + instanceTimeLimit;
    for (;;) {
        auto lock = std::make_unique<FileLock>(folder / lockName, FileLock::Mode::tryOnce);
        if (lock->isHeld()) {
            // Ours now; whatever socket file is left belongs to a dead instance.
            ::unlink(socket.c_str());
            const int listener = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
            if (listener < 0) return failure("cannot make a socket");
            if (::bind(listener, reinterpret_cast<const sockaddr*>(&*address), sizeof *address) != 0 ||
                ::listen(listener, listenBacklog) != 0) {
                const std::string problem = failure("cannot listen on " + socket.string());
                ::close(listener);
                return problem;
            }
            return std::unique_ptr<InstanceServer>(
                new InstanceServer(queue, socket, std::move(lock), listener, std::move(handler)));
        }
        if (!lock->error().empty()) return lock->error();
        if (const int fd = connectTo(socket); fd >= 0) {
            // It closes this connection only by ending.
            if (sendAll(fd, std::string(instance_requests::quit) + "\n")) readToEnd(fd, deadline);
            ::close(fd);
        } else {
            ::poll(nullptr, 0, std::min(retryPauseMs, remainingMs(deadline)));
        }
        if (remainingMs(deadline) == 0)
            return "the running instance did not quit within " +
                   std::to_string(instanceTimeLimit.count() / 1000) + " s";
    }
}

InstanceServer::InstanceServer(EpollMainQueue& queue, fs::path socket, std::unique_ptr<FileLock> lock,
                               int listener, Handler handler)
    : queue_(queue),
      socket_(std::move(socket)),
      lock_(std::move(lock)),
      listener_(listener),
      handler_(std::move(handler)) {
    queue_.watch(listener_, [this] { acceptClients(); });
}

InstanceServer::~InstanceServer() {
    queue_.unwatch(listener_);
    ::close(listener_);
    ::unlink(socket_.c_str());
    for (const auto& [client, received] : pending_) drop(client);
}

void InstanceServer::acceptClients() {
    int client = -1;
    while ((client = ::accept4(listener_, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC)) >= 0) {
        pending_[client];
        queue_.watch(client, [this, client] { readRequest(client); });
    }
}

void InstanceServer::drop(int client) {
    queue_.unwatch(client);
    ::close(client);
}

void InstanceServer::readRequest(int client) {
    std::array<char, maxRequestLength> buffer{};
    const ssize_t count = ::read(client, buffer.data(), buffer.size());
    if (count < 0 && (errno == EAGAIN || errno == EINTR)) return;
    std::string& received = pending_[client];
    if (count > 0) received.append(buffer.data(), static_cast<std::size_t>(count));
    const auto end = received.find('\n');
    if (end == std::string::npos) {
        if (count <= 0 || received.size() > maxRequestLength) {
            pending_.erase(client);
            drop(client);
        }
        return;
    }
    const std::string request = received.substr(0, end);
    pending_.erase(client);
    sendAll(client, handler_(request) + "\n");
    if (request == instance_requests::quit) {
        // Left open on purpose: the process's end closes it (see the destructor).
        queue_.unwatch(client);
        return;
    }
    drop(client);
}

}  // namespace ostrelle
