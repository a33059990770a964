#include "platform/linux/signal_watch.h"

#include <signal.h>
#include <sys/signalfd.h>
#include <unistd.h>

namespace ostrelle {

SignalWatch::SignalWatch(EpollMainQueue& queue, std::initializer_list<int> numbers, Handler onSignal)
    : queue_(queue), onSignal_(std::move(onSignal)) {
    sigset_t set;
    sigemptyset(&set);
    for (const int number : numbers) {
        // Started in the background by a shell, a program is meant to ignore an interrupt.
        struct sigaction current {};
        if (::sigaction(number, nullptr, &current) == 0 && current.sa_handler == SIG_IGN) continue;
        sigaddset(&set, number);
    }
    ::pthread_sigmask(SIG_BLOCK, &set, nullptr);
    fd_ = ::signalfd(-1, &set, SFD_NONBLOCK | SFD_CLOEXEC);
    if (fd_ < 0) return;
    queue_.watch(fd_, [this] {
        signalfd_siginfo info{};
        while (::read(fd_, &info, sizeof info) == static_cast<ssize_t>(sizeof info))
            onSignal_(static_cast<int>(info.ssi_signo));
    });
}

SignalWatch::~SignalWatch() {
    if (fd_ < 0) return;
    queue_.unwatch(fd_);
    ::close(fd_);
}

}  // namespace ostrelle
