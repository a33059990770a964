#include "platform/linux/epoll_main_queue.h"

#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <cstdint>
#include <system_error>

#include "platform/linux/monotonic_clock.h"

namespace ostrelle {
namespace {

constexpr std::size_t eventsPerWait = 16;

[[noreturn]] void fail(const char* what) {
    throw std::system_error(errno, std::generic_category(), what);
}

timespec toTimespec(double seconds) {
    timespec value{};
    value.tv_sec = static_cast<time_t>(std::floor(seconds));
    value.tv_nsec = static_cast<long>(std::ceil((seconds - std::floor(seconds)) * 1e9));
    if (value.tv_nsec >= 1000000000) {
        ++value.tv_sec;
        value.tv_nsec = 0;
    }
    return value;
}

void drain(int fd) {
    std::uint64_t count = 0;
    while (::read(fd, &count, sizeof count) < 0 && errno == EINTR) {
    }
}

}  // namespace

EpollMainQueue::EpollMainQueue() {
    epoll_ = ::epoll_create1(EPOLL_CLOEXEC);
    if (epoll_ < 0) fail("epoll_create1");
    wakeFd_ = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (wakeFd_ < 0) fail("eventfd");
    epoll_event event{};
    event.events = EPOLLIN;
    event.data.fd = wakeFd_;
    if (::epoll_ctl(epoll_, EPOLL_CTL_ADD, wakeFd_, &event) != 0) fail("epoll_ctl");
}

EpollMainQueue::~EpollMainQueue() {
    for (const int fd : {wakeFd_, epoll_})
        if (fd >= 0) ::close(fd);
}

double EpollMainQueue::now() const {
    return monotonicSeconds();
}

void EpollMainQueue::post(Task task) {
    postAfter(0, std::move(task));
}

TaskHandle EpollMainQueue::postAfter(double seconds, Task task) {
    TaskHandle handle;
    {
        const std::lock_guard lock(mutex_);
        handle = tasks_.add(now() + std::max(0.0, seconds), std::move(task));
    }
    // The loop's own thread looks at the schedule again before it next sleeps.
    if (loopThread_.load() != std::this_thread::get_id()) wake();
    return handle;
}

void EpollMainQueue::wake() const {
    const std::uint64_t one = 1;
    while (::write(wakeFd_, &one, sizeof one) < 0 && errno == EINTR) {
    }
}

bool EpollMainQueue::watch(int fd, Watcher onReadable) {
    epoll_event event{};
    event.events = EPOLLIN;
    event.data.fd = fd;
    const bool known = watchers_.contains(fd);
    if (::epoll_ctl(epoll_, known ? EPOLL_CTL_MOD : EPOLL_CTL_ADD, fd, &event) != 0) return false;
    watchers_[fd] = std::make_shared<Watcher>(std::move(onReadable));
    return true;
}

void EpollMainQueue::unwatch(int fd) {
    if (watchers_.erase(fd) == 0) return;
    ::epoll_ctl(epoll_, EPOLL_CTL_DEL, fd, nullptr);
}

void EpollMainQueue::quit() {
    quit_ = true;
    wake();
}

void EpollMainQueue::quitWhenIdle() {
    quitWhenIdle_ = true;
    wake();
}

std::size_t EpollMainQueue::pendingCount() {
    const std::lock_guard lock(mutex_);
    return tasks_.pendingCount();
}

void EpollMainQueue::runDue() {
    // Only what is due now: a task that posts another never keeps the loop from its descriptors.
    const double time = now();
    while (!quit_) {
        std::optional<TaskSchedule::Due> next;
        {
            const std::lock_guard lock(mutex_);
            next = tasks_.takeDue(time);
        }
        if (!next) return;
        next->task();
    }
}

std::optional<double> EpollMainQueue::nextDue() {
    const std::lock_guard lock(mutex_);
    return tasks_.nextDue();
}

int EpollMainQueue::wait(std::span<epoll_event> events, std::optional<double> due) {
    const int capacity = static_cast<int>(events.size());
    if (!due) return ::epoll_wait(epoll_, events.data(), capacity, -1);
    const double left = std::max(0.0, *due - now());
    // One call per wake-up, with a time-out as fine as the clock's; a kernel older than 5.11
    // lacks it and gets whole milliseconds, rounded up so that nothing runs early.
    if (!coarseTimeouts_) {
        const timespec timeout = toTimespec(left);
        const int count = ::epoll_pwait2(epoll_, events.data(), capacity, &timeout, nullptr);
        if (count >= 0 || errno != ENOSYS) return count;
        coarseTimeouts_ = true;
    }
    return ::epoll_wait(epoll_, events.data(), capacity, static_cast<int>(std::ceil(left * 1000)));
}

void EpollMainQueue::dispatch(int fd) {
    if (fd == wakeFd_) {
        drain(wakeFd_);
    } else if (const auto found = watchers_.find(fd); found != watchers_.end()) {
        // Held here so that a watcher may unwatch itself.
        const std::shared_ptr<Watcher> watcher = found->second;
        (*watcher)();
    }
}

std::optional<double> EpollMainQueue::runReady() {
    std::array<epoll_event, eventsPerWait> events{};
    runDue();
    const int count = ::epoll_wait(epoll_, events.data(), static_cast<int>(events.size()), 0);
    for (int i = 0; i < count; ++i) dispatch(events[static_cast<std::size_t>(i)].data.fd);
    runDue();
    const auto due = nextDue();
    if (!due) return std::nullopt;
    return std::max(0.0, *due - now());
}

void EpollMainQueue::run() {
    loopThread_ = std::this_thread::get_id();
    std::array<epoll_event, eventsPerWait> events{};
    while (!quit_) {
        runDue();
        if (quit_) break;
        const auto due = nextDue();
        if (!due && quitWhenIdle_) break;
        const int count = wait(events, due);
        if (count < 0) {
            if (errno == EINTR) continue;
            fail("epoll_wait");
        }
        for (int i = 0; i < count && !quit_; ++i) dispatch(events[static_cast<std::size_t>(i)].data.fd);
    }
    loopThread_ = std::thread::id{};
    // A quit asked for before run() still ends it at once; the next run() starts afresh.
    quit_ = false;
}

}  // namespace ostrelle
