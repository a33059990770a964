#include "platform/linux/touchpad_reader.h"

#include <fmt/format.h>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "platform/linux/monotonic_clock.h"
#include "support/log.h"
#include "touchpad/touchpad_notices.h"

namespace ostrelle {
namespace {

constexpr int eventsPerWait = 16;

bool deniesPermission(int error) {
    return error == EACCES || error == EPERM;
}

void addToEpoll(int epoll, int fd) {
    epoll_event event{};
    event.events = EPOLLIN;
    event.data.fd = fd;
    ::epoll_ctl(epoll, EPOLL_CTL_ADD, fd, &event);
}

void closeIfOpen(int fd) {
    if (fd >= 0) ::close(fd);
}

}  // namespace

TouchpadReader::TouchpadReader(Publish publish, Count count)
    : publish_(std::move(publish)), count_(std::move(count)) {}

TouchpadReader::~TouchpadReader() {
    if (thread_.joinable()) {
        {
            const std::lock_guard lock(holdMutex_);
            stopping_ = true;
        }
        holdChanged_.notify_all();
        const std::uint64_t one = 1;
        [[maybe_unused]] const auto written = ::write(wake_, &one, sizeof one);
        thread_.join();
    }
    touchpads_.clear();
    closeIfOpen(epoll_);
    closeIfOpen(inotify_);
    closeIfOpen(wake_);
}

std::optional<TouchpadReader::Failure> TouchpadReader::start() {
    epoll_ = ::epoll_create1(EPOLL_CLOEXEC);
    wake_ = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    inotify_ = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    if (epoll_ < 0 || wake_ < 0 || inotify_ < 0) {
        Log::error(fmt::format("Cannot watch the touchpads: {}", std::strerror(errno)));
        return Failure{};
    }
    // Watched before the scan, so that a touchpad plugged in meanwhile is not missed.
    if (::inotify_add_watch(inotify_, TouchpadFinder::inputFolder,
                            IN_CREATE | IN_ATTRIB | IN_DELETE | IN_MOVED_TO) < 0)
        Log::warning(fmt::format("Touchpads plugged in later will not be seen: cannot watch {}: {}",
                                 TouchpadFinder::inputFolder, std::strerror(errno)));
    addToEpoll(epoll_, wake_);
    addToEpoll(epoll_, inotify_);

    Failure failure;
    for (const std::string& node : finder_.touchpads()) {
        int error = 0;
        if (!tryOpen(node, error) && deniesPermission(error)) failure.permissionDenied = true;
    }
    if (touchpads_.empty()) return failure;
    if (failure.permissionDenied) Log::warning("Some touchpads are left out: no permission to read them");
    thread_ = std::thread(&TouchpadReader::run, this);
    return std::nullopt;
}

bool TouchpadReader::tryOpen(const std::string& node, int& error) {
    const std::string sysname = node.substr(node.rfind('/') + 1);
    switch (finder_.classify(sysname)) {
        case TouchpadFinder::Verdict::other:
            return true;
        case TouchpadFinder::Verdict::unknown:
            return false;
        case TouchpadFinder::Verdict::touchpad:
            break;
    }
    EvdevTouchpad::Opened opened = EvdevTouchpad::open(node, nextIdBase_);
    if (opened.refusal) {
        if (refused_.insert(node).second) Log::warning(*opened.refusal);
        return true;
    }
    error = opened.error;
    if (!opened.touchpad) return false;
    nextIdBase_ += FrameAssembler::idSpan;
    add(std::move(opened.touchpad));
    return true;
}

void TouchpadReader::add(std::unique_ptr<EvdevTouchpad> touchpad) {
    const int fd = touchpad->fd();
    if (const auto notice = limitationNotice(touchpad->description())) Log::warning(*notice);
    addToEpoll(epoll_, fd);
    touchpads_.push_back(std::move(touchpad));
    openCount_ = static_cast<int>(touchpads_.size());
}

EvdevTouchpad* TouchpadReader::touchpadOn(int fd) const {
    const auto found =
        std::ranges::find_if(touchpads_, [fd](const auto& touchpad) { return touchpad->fd() == fd; });
    return found == touchpads_.end() ? nullptr : found->get();
}

void TouchpadReader::remove(int fd) {
    const EvdevTouchpad* touchpad = touchpadOn(fd);
    if (touchpad == nullptr) return;
    const bool hadContacts = !touchpad->contacts().empty();
    ::epoll_ctl(epoll_, EPOLL_CTL_DEL, fd, nullptr);
    std::erase_if(touchpads_, [touchpad](const auto& open) { return open.get() == touchpad; });
    openCount_ = static_cast<int>(touchpads_.size());
    // Fingers on a touchpad that went away are lifted, or they would stay down for ever.
    if (hadContacts) publish_({allContacts(), monotonicSeconds(), 0});
}

std::vector<Contact> TouchpadReader::allContacts() const {
    std::vector<Contact> contacts;
    for (const auto& touchpad : touchpads_) {
        const auto touchpadContacts = touchpad->contacts();
        contacts.insert(contacts.end(), touchpadContacts.begin(), touchpadContacts.end());
    }
    return contacts;
}

void TouchpadReader::readFrom(EvdevTouchpad& touchpad) {
    const bool present = touchpad.read([&](const EvdevTouchpad::Report& report) {
        if (report.frame || report.clicks > 0) {
            Delivery delivery;
            if (report.frame) delivery.frame = allContacts();
            delivery.time = report.time;
            delivery.clicks = report.clicks;
            publish_(std::move(delivery));
        }
        // Counted once posted: whoever sees the count can find the report's work queued.
        count_(!touchpad.contacts().empty());
    });
    if (!present) remove(touchpad.fd());
}

void TouchpadReader::run() {
    std::array<epoll_event, eventsPerWait> events{};
    while (true) {
        {
            std::unique_lock lock(holdMutex_);
            if (hold_) {
                held_ = true;
                holdChanged_.notify_all();
                holdChanged_.wait(lock, [this] { return !hold_ || stopping_; });
                held_ = false;
            }
            if (stopping_) return;
        }
        int timeout = -1;
        if (!pending_.empty()) {
            const auto wait = std::chrono::ceil<std::chrono::milliseconds>(nextRetry_ - Clock::now()).count();
            timeout = static_cast<int>(std::clamp<std::int64_t>(wait, 0, retryInterval));
        }
        const int ready = ::epoll_wait(epoll_, events.data(), eventsPerWait, timeout);
        for (int i = 0; i < ready; ++i) {
            const int fd = events[static_cast<std::size_t>(i)].data.fd;
            if (fd == wake_) {
                std::uint64_t count = 0;
                [[maybe_unused]] const auto read = ::read(wake_, &count, sizeof count);
            } else if (fd == inotify_) {
                handleNodeChanges();
            } else if (EvdevTouchpad* touchpad = touchpadOn(fd)) {
                readFrom(*touchpad);
            }
        }
        retryPending();
    }
}

void TouchpadReader::handleNodeChanges() {
    alignas(inotify_event) char buffer[4096];
    while (true) {
        const ssize_t length = ::read(inotify_, buffer, sizeof buffer);
        if (length <= 0) return;
        for (ssize_t offset = 0; offset < length;) {
            const auto* event = reinterpret_cast<const inotify_event*>(buffer + offset);
            offset += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
            const std::string name = event->len > 0 ? std::string(event->name) : std::string();
            if (!TouchpadFinder::isEventNode(name)) continue;
            const std::string node = std::string(TouchpadFinder::inputFolder) + "/" + name;
            const auto open = std::ranges::find_if(
                touchpads_, [&](const auto& touchpad) { return touchpad->node() == node; });
            if ((event->mask & IN_DELETE) != 0) {
                if (open != touchpads_.end()) remove((*open)->fd());
                pending_.erase(node);
                refused_.erase(node);
                continue;
            }
            if (open != touchpads_.end()) {
                // A node made anew under a name still open: the old device is gone.
                if ((event->mask & (IN_CREATE | IN_MOVED_TO)) == 0) continue;
                remove((*open)->fd());
            }
            // A node may appear before it is readable or its device is complete: keep trying
            // for a while.
            int error = 0;
            if (tryOpen(node, error)) {
                pending_.erase(node);
            } else {
                auto [entry, added] = pending_.try_emplace(
                    node, Pending{Clock::now() + std::chrono::duration_cast<Clock::duration>(
                                                     std::chrono::duration<double>(retryPeriod))});
                entry->second.error = error;
                if (added && pending_.size() == 1)
                    nextRetry_ = Clock::now() + std::chrono::milliseconds(retryInterval);
            }
        }
    }
}

void TouchpadReader::retryPending() {
    if (pending_.empty()) return;
    const Clock::time_point now = Clock::now();
    if (now < nextRetry_) return;
    nextRetry_ = now + std::chrono::milliseconds(retryInterval);
    for (auto entry = pending_.begin(); entry != pending_.end();) {
        int error = 0;
        if (tryOpen(entry->first, error)) {
            entry = pending_.erase(entry);
        } else if (now >= entry->second.giveUp) {
            Log::warning(
                fmt::format("Cannot read the touchpad at {}: {}", entry->first,
                            error != 0 ? std::strerror(error) : "its device did not appear in sysfs"));
            entry = pending_.erase(entry);
        } else {
            entry->second.error = error;
            ++entry;
        }
    }
}

void TouchpadReader::holdForTesting(bool hold) {
    std::unique_lock lock(holdMutex_);
    hold_ = hold;
    holdChanged_.notify_all();
    if (!hold || !thread_.joinable()) return;
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto written = ::write(wake_, &one, sizeof one);
    holdChanged_.wait(lock, [this] { return held_; });
}

}  // namespace ostrelle
