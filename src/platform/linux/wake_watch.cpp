#include "platform/linux/wake_watch.h"

#include <systemd/sd-bus.h>

namespace ostrelle {
namespace {

constexpr const char* logindService = "org.freedesktop.login1";
constexpr const char* logindPath = "/org/freedesktop/login1";
constexpr const char* managerInterface = "org.freedesktop.login1.Manager";
constexpr const char* sleepSignal = "PrepareForSleep";

int onPrepareForSleep(sd_bus_message* message, void* context, sd_bus_error*) {
    int goingToSleep = 0;
    if (sd_bus_message_read(message, "b", &goingToSleep) < 0) return 0;
    // True announces the suspend; false comes after the resume.
    if (!goingToSleep) (*static_cast<std::function<void()>*>(context))();
    return 0;
}

}  // namespace

WakeWatch::WakeWatch(EpollMainQueue& queue, std::function<void()> onWake)
    : queue_(queue), onWake_(std::move(onWake)) {
    if (sd_bus_open_system(&bus_) < 0) {
        bus_ = nullptr;
        return;
    }
    if (sd_bus_match_signal(bus_, &slot_, logindService, logindPath, managerInterface, sleepSignal,
                            onPrepareForSleep, &onWake_) < 0 ||
        (fd_ = sd_bus_get_fd(bus_)) < 0 || !queue_.watch(fd_, [this] { process(); })) {
        slot_ = sd_bus_slot_unref(slot_);
        bus_ = sd_bus_flush_close_unref(bus_);
        fd_ = -1;
        return;
    }
    // Messages that arrived with the match's reply are already read into the bus's buffer.
    process();
}

WakeWatch::~WakeWatch() {
    if (fd_ >= 0) queue_.unwatch(fd_);
    sd_bus_slot_unref(slot_);
    sd_bus_flush_close_unref(bus_);
}

void WakeWatch::process() {
    int result = 0;
    while ((result = sd_bus_process(bus_, nullptr)) > 0) {
    }
    if (result < 0) {
        // The bus went away (the daemon restarted): no more wake signals to wait for.
        queue_.unwatch(fd_);
        fd_ = -1;
    }
}

}  // namespace ostrelle
