#include "platform/linux/uinput_key_output.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <libevdev/libevdev-uinput.h>
#include <libevdev/libevdev.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>

namespace ostrelle {
namespace {

// Besides the keys, the buttons of a pointer with relative axes: udev then tags the device both
// keyboard and mouse, and libinput takes its clicks as those of a pointer.
constexpr std::array<unsigned, 3> buttons = {BTN_LEFT, BTN_RIGHT, BTN_MIDDLE};

std::string reasonFor(int error, const std::filesystem::path& uinput) {
    switch (error) {
        case EACCES:
        case EPERM:
            return fmt::format(fmt::runtime(UinputKeyOutput::noPermissionText), uinput.string());
        case ENOENT:
        case ENODEV:
        case ENXIO:
            return fmt::format(fmt::runtime(UinputKeyOutput::missingText), uinput.string());
        default:
            return fmt::format(fmt::runtime(UinputKeyOutput::failedText), uinput.string(),
                               std::strerror(error));
    }
}

libevdev* describeDevice() {
    libevdev* description = libevdev_new();
    libevdev_set_name(description, std::string(UinputKeyOutput::deviceName).c_str());
    libevdev_set_id_bustype(description, BUS_VIRTUAL);
    libevdev_enable_event_type(description, EV_KEY);
    for (unsigned key = KEY_ESC; key <= KEY_MICMUTE; ++key)
        libevdev_enable_event_code(description, EV_KEY, key, nullptr);
    for (const unsigned button : buttons) libevdev_enable_event_code(description, EV_KEY, button, nullptr);
    libevdev_enable_event_type(description, EV_REL);
    libevdev_enable_event_code(description, EV_REL, REL_X, nullptr);
    libevdev_enable_event_code(description, EV_REL, REL_Y, nullptr);
    // No EV_REP: the kernel's own key repeat would fire whenever the process stalls between a
    // press and its release; the desktop repeats held keys by itself.
    return description;
}

}  // namespace

std::variant<std::unique_ptr<UinputKeyOutput>, std::string> UinputKeyOutput::create(
    const std::filesystem::path& uinput) {
    const int fd = ::open(uinput.c_str(), O_RDWR | O_CLOEXEC);
    if (fd < 0) return reasonFor(errno, uinput);
    libevdev* description = describeDevice();
    libevdev_uinput* device = nullptr;
    // Given a descriptor, libevdev leaves opening (and closing) the node to us.
    const int result = libevdev_uinput_create_from_device(description, fd, &device);
    if (result < 0) {
        libevdev_free(description);
        ::close(fd);
        return reasonFor(-result, uinput);
    }
    return std::unique_ptr<UinputKeyOutput>(new UinputKeyOutput(fd, description, device));
}

UinputKeyOutput::UinputKeyOutput(int fd, libevdev* description, libevdev_uinput* device)
    : fd_(fd), description_(description), device_(device) {}

UinputKeyOutput::~UinputKeyOutput() {
    libevdev_uinput_destroy(device_);
    libevdev_free(description_);
    ::close(fd_);
}

void UinputKeyOutput::postKeyCode(std::uint16_t code, bool down) {
    // A code the device does not have is dropped by the kernel, as a refused event should be.
    if (libevdev_uinput_write_event(device_, EV_KEY, code, down ? 1 : 0) == 0)
        libevdev_uinput_write_event(device_, EV_SYN, SYN_REPORT, 0);
}

std::string UinputKeyOutput::devnode() const {
    const char* node = libevdev_uinput_get_devnode(device_);
    return node == nullptr ? std::string() : std::string(node);
}

}  // namespace ostrelle
