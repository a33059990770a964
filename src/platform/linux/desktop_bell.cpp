#include "platform/linux/desktop_bell.h"

#include <X11/Xlib.h>
#include <canberra.h>

namespace ostrelle {
namespace {

constexpr const char* bellEvent = "bell";  // the theme's name for the alert sound
constexpr const char* bellDescription = "Action failed";
constexpr int xBellVolume = 0;  // percent relative to the server's base volume: as configured

}  // namespace

DesktopBell::DesktopBell(X11Connection* x11) : x11_(x11) {}

DesktopBell::~DesktopBell() {
    if (sounds_ != nullptr) ca_context_destroy(sounds_);
}

void DesktopBell::beep() {
    if (playSound()) return;
    if (x11_ == nullptr) return;
    XBell(x11_->display(), xBellVolume);
    XFlush(x11_->display());
}

bool DesktopBell::playSound() {
    if (soundsFailed_) return false;
    // The context opens its sound server connection once and keeps it, so later beeps are quick.
    if (sounds_ == nullptr &&
        (ca_context_create(&sounds_) != CA_SUCCESS || ca_context_open(sounds_) != CA_SUCCESS)) {
        if (sounds_ != nullptr) ca_context_destroy(sounds_);
        sounds_ = nullptr;
        soundsFailed_ = true;
        return false;
    }
    return ca_context_play(sounds_, 0, CA_PROP_EVENT_ID, bellEvent, CA_PROP_EVENT_DESCRIPTION,
                           bellDescription, nullptr) == CA_SUCCESS;
}

}  // namespace ostrelle
