#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "actions/linux_actions.h"
#include "actions/no_op_system_port.h"
#include "actions/system_port.h"
#include "platform/linux/x11_active_window.h"

namespace ostrelle {

// What the actions do to a Linux desktop: chords through uinput or XTest, the application in
// front as the runner's per-application rules name it, applications opened from their desktop
// entries, the desktop's bell. The macOS-only parts (accessibility, pasteboard, macOS events) are
// inert: the runner's Linux path never asks them.
class LinuxSystemPort final : public SystemPort, private Workspace {
  public:
    struct Parts {
        std::unique_ptr<KeyCodeOutput> keys;
        const LinuxActions& actions;
        // The class of the active window; absent where it can't be known (Wayland).
        std::function<std::optional<WindowClass>()> activeWindowClass;
        std::function<void(const std::string& path)> openApplication;
        Feedback& feedback;
    };

    explicit LinuxSystemPort(Parts parts) : parts_(std::move(parts)) {}

    EventOutput& events() override { return inert_.events(); }
    Workspace& workspace() override { return *this; }
    Accessibility& accessibility() override { return inert_.accessibility(); }
    Pasteboard& pasteboard() override { return inert_.pasteboard(); }
    Feedback& feedback() override { return parts_.feedback; }
    KeyCodeOutput* keyCodes() override { return parts_.keys.get(); }

  private:
    std::optional<std::string> frontmostApplicationID() override;
    void openApplication(const std::string& path) override;
    bool sendDockNotification(const std::string&) override { return false; }

    Parts parts_;
    NoOpSystemPort inert_;
};

}  // namespace ostrelle
