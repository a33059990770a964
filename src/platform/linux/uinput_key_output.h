#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <variant>

#include "actions/system_port.h"

struct libevdev;
struct libevdev_uinput;

namespace ostrelle {

// Keys and buttons through a virtual keyboard-and-pointer device of the kernel's, so that they
// reach every X11 and Wayland desktop and the console alike. The device is made once and kept:
// a desktop takes a moment to adopt a new one, and keys sent before then are lost.
class UinputKeyOutput final : public KeyCodeOutput {
  public:
    static constexpr std::string_view deviceName = "Ostrelle virtual keyboard";
    // {} is the uinput path; the last text's second {} is the system's reason.
    static constexpr std::string_view noPermissionText =
        "Ostrelle may not send keys and clicks through {}. Run scripts/install.sh once: it lets the "
        "logged-in user send them.";
    static constexpr std::string_view missingText =
        "Ostrelle cannot send keys and clicks: {} is missing. Load the uinput module (sudo modprobe uinput), "
        "then run scripts/install.sh once: it lets the logged-in user send them.";
    static constexpr std::string_view failedText = "Ostrelle cannot send keys and clicks through {}: {}.";

    // The device on the uinput node at `uinput`, or why it can't be made, as the user should read it.
    static std::variant<std::unique_ptr<UinputKeyOutput>, std::string> create(
        const std::filesystem::path& uinput = "/dev/uinput");
    ~UinputKeyOutput() override;
    UinputKeyOutput(const UinputKeyOutput&) = delete;
    UinputKeyOutput& operator=(const UinputKeyOutput&) = delete;

    std::optional<std::string> unavailableReason() override { return std::nullopt; }
    void postKeyCode(std::uint16_t code, bool down) override;

    // The device's /dev/input/eventN, where readers see what was sent; empty without /sys.
    std::string devnode() const;

  private:
    UinputKeyOutput(int fd, libevdev* description, libevdev_uinput* device);

    int fd_;
    libevdev* description_;
    libevdev_uinput* device_;
};

}  // namespace ostrelle
