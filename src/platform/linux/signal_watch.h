#pragma once

#include <functional>
#include <initializer_list>

#include "platform/linux/epoll_main_queue.h"

namespace ostrelle {

// Turns signals into calls on the queue's thread (a signalfd), where the service may do anything
// (flush the log, remove its socket) that a signal handler may not. The signals are blocked in
// the calling thread, so construct it before any other thread exists: threads started later
// inherit the block and never take the signal themselves. A signal ignored at start stays ignored.
class SignalWatch {
  public:
    using Handler = std::function<void(int number)>;

    SignalWatch(EpollMainQueue& queue, std::initializer_list<int> numbers, Handler onSignal);
    ~SignalWatch();
    SignalWatch(const SignalWatch&) = delete;
    SignalWatch& operator=(const SignalWatch&) = delete;

  private:
    EpollMainQueue& queue_;
    Handler onSignal_;
    int fd_ = -1;
};

}  // namespace ostrelle
