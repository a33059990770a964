#include "platform/linux/desktop_session.h"

#include "platform/linux/hot_key_choice.h"
#include "platform/linux/key_code_output.h"
#include "platform/linux/xkb_keyboard_layout.h"

namespace ostrelle {

DesktopSession::DesktopSession(EpollMainQueue& queue, const EnvironmentLookup& environment, bool dryRun)
    : linuxActions_(linuxDesktopFrom(environment("XDG_CURRENT_DESKTOP").value_or(""))),
      x11_(X11Connection::open(environment("DISPLAY").value_or(""))),
      bell_(x11_.get()) {
    if (x11_) {
        x11_->watch(queue);
        activeWindow_.emplace(*x11_);
    }
    layout_ = XkbKeyboardLayout::forSession(x11_.get());
    dryRun_.linuxKeyCodes = true;
    if (!dryRun) {
        desktop_.emplace(LinuxSystemPort::Parts{
            .keys = openKeyCodeOutput(environment),
            .actions = linuxActions_,
            .activeWindowClass = [this]() -> std::optional<WindowClass> {
                return activeWindow_ ? activeWindow_->active() : std::nullopt;
            },
            .openApplication = [this](const std::string& path) { launcher_.open(path); },
            .feedback = bell_,
        });
    }
    hotKeys_ = chooseHotKeyRegistrar(environment, x11_.get(), queue);
}

ActionHost DesktopSession::host() const {
    ActionHost host;
    host.keyboardLayout = layout_.get();
    host.appFiles = &applications_;
    host.linuxActions = &linuxActions_;
    return host;
}

}  // namespace ostrelle
