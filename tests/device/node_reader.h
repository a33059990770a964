#pragma once

#include <fcntl.h>
#include <libevdev/libevdev.h>
#include <poll.h>
#include <unistd.h>

#include <chrono>
#include <ostream>
#include <string>
#include <vector>

namespace ostrelle::testing {

struct KeyEvent {
    unsigned code;
    int value;
    friend bool operator==(const KeyEvent&, const KeyEvent&) = default;
};
inline std::ostream& operator<<(std::ostream& out, const KeyEvent& event) {
    return out << "(" << event.code << ", " << event.value << ")";
}

// A reader of an event node, as a desktop's input stack is.
class NodeReader {
  public:
    explicit NodeReader(const std::string& node)
        : fd_(::open(node.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC)) {
        if (fd_ >= 0) libevdev_new_from_fd(fd_, &device_);
    }
    ~NodeReader() {
        libevdev_free(device_);
        if (fd_ >= 0) ::close(fd_);
    }
    libevdev* device() const { return device_; }

    // The key events read until `count` came or the limit passed.
    std::vector<KeyEvent> keys(std::size_t count, std::chrono::milliseconds limit = std::chrono::seconds(5)) {
        const auto deadline = std::chrono::steady_clock::now() + limit;
        std::vector<KeyEvent> events;
        while (events.size() < count) {
            input_event event{};
            const int status = libevdev_next_event(device_, LIBEVDEV_READ_FLAG_NORMAL, &event);
            if (status == LIBEVDEV_READ_STATUS_SUCCESS && event.type == EV_KEY)
                events.push_back({event.code, event.value});
            if (status != -EAGAIN) continue;
            const auto left =
                std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
            pollfd readable{fd_, POLLIN, 0};
            if (left.count() <= 0 || ::poll(&readable, 1, static_cast<int>(left.count())) <= 0) break;
        }
        return events;
    }

  private:
    int fd_;
    libevdev* device_ = nullptr;
};

}  // namespace ostrelle::testing
