#include "platform/linux/folder_watch.h"

#include <fmt/format.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <set>

#include "support/log.h"

namespace ostrelle {
namespace {

// Not IN_CREATE or IN_MODIFY: the temporary file of an atomic write would wake us for nothing.
constexpr std::uint32_t watchedEvents = IN_CLOSE_WRITE | IN_MOVED_TO | IN_DELETE | IN_MOVED_FROM;

}  // namespace

FolderWatch::FolderWatch(EpollMainQueue& queue, const std::filesystem::path& folder, Handler onChange)
    : queue_(queue), onChange_(std::move(onChange)) {
    std::error_code ignored;
    std::filesystem::create_directories(folder, ignored);
    fd_ = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    if (fd_ >= 0 && ::inotify_add_watch(fd_, folder.c_str(), watchedEvents) < 0) {
        ::close(fd_);
        fd_ = -1;
    }
    if (fd_ < 0 || !queue_.watch(fd_, [this] { readEvents(); })) {
        Log::warning(fmt::format("cannot watch {} for changes by other programs: {}", folder.string(),
                                 std::strerror(errno)));
        if (fd_ >= 0) ::close(fd_);
        fd_ = -1;
    }
}

FolderWatch::~FolderWatch() {
    if (fd_ < 0) return;
    queue_.unwatch(fd_);
    ::close(fd_);
}

void FolderWatch::readEvents() {
    alignas(inotify_event) std::array<char, 4096> buffer{};
    // One call per name however many events arrived for it (a write and a rename come together).
    std::set<std::string> names;
    for (;;) {
        const ssize_t length = ::read(fd_, buffer.data(), buffer.size());
        if (length <= 0) break;
        for (ssize_t offset = 0; offset < length;) {
            const auto* event = reinterpret_cast<const inotify_event*>(buffer.data() + offset);
            if (event->len > 0) names.insert(event->name);
            offset += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
        }
    }
    for (const std::string& name : names) onChange_(name);
}

}  // namespace ostrelle
