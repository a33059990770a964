#pragma once

#include <functional>

#include "platform/linux/epoll_main_queue.h"

struct sd_bus;
struct sd_bus_slot;

namespace ostrelle {

// Calls back on the queue's thread when the computer resumes from suspend: logind's
// PrepareForSleep(false) on the system bus. Without a system bus or logind (containers, some
// minimal systems) it does nothing, silently: there is no wake to hear of.
class WakeWatch {
  public:
    WakeWatch(EpollMainQueue& queue, std::function<void()> onWake);
    ~WakeWatch();
    WakeWatch(const WakeWatch&) = delete;
    WakeWatch& operator=(const WakeWatch&) = delete;

    bool isListening() const { return bus_ != nullptr; }

  private:
    void process();

    EpollMainQueue& queue_;
    std::function<void()> onWake_;
    sd_bus* bus_ = nullptr;
    sd_bus_slot* slot_ = nullptr;
    int fd_ = -1;
};

}  // namespace ostrelle
