#pragma once

#include "actions/system_port.h"
#include "platform/linux/x11_connection.h"

struct ca_context;

namespace ostrelle {

// The desktop's alert: the "bell" event sound of the user's sound theme through libcanberra, so
// that it follows the desktop's volume and its "alert sound" settings; the X server's bell when
// no sound server plays it. Without either it is silent. Linux trackpads have no haptic engine
// the desktop lets programs drive, so haptic() does nothing and hasHaptics says so to the settings.
class DesktopBell final : public Feedback {
  public:
    // `x11` may be null (a Wayland session without XWayland, the console); it must outlive this.
    explicit DesktopBell(X11Connection* x11);
    ~DesktopBell() override;
    DesktopBell(const DesktopBell&) = delete;
    DesktopBell& operator=(const DesktopBell&) = delete;

    void beep() override;
    void haptic() override {}
    bool hasHaptics() const override { return false; }

  private:
    bool playSound();

    X11Connection* x11_;
    ca_context* sounds_ = nullptr;
    bool soundsFailed_ = false;  // no sound server: the X bell from then on
};

}  // namespace ostrelle
