#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "platform/linux/evdev_touchpad.h"
#include "platform/linux/touchpad_finder.h"

namespace ostrelle {

// Reads every touchpad on one thread of its own, which only reads and publishes: one epoll over
// the open touchpads, an inotify watch on /dev/input for touchpads that come and go (it sees
// devtmpfs nodes, so hot-plug works with no udev daemon), and an eventfd that ends it.
class TouchpadReader {
  public:
    // What one report delivers, handed to `publish` on the reader's thread.
    struct Delivery {
        std::optional<std::vector<Contact>> frame;  // every open touchpad's contacts, when they changed
        double time = 0;
        int clicks = 0;
    };
    using Publish = std::function<void(Delivery)>;
    // Called for every report read, with whether any contact was down after it.
    using Count = std::function<void(bool touched)>;

    // Why the reader cannot start: nothing it may read, and whether a touchpad was refused
    // for permission.
    struct Failure {
        bool permissionDenied = false;
    };

    TouchpadReader(Publish publish, Count count);
    ~TouchpadReader();
    TouchpadReader(const TouchpadReader&) = delete;
    TouchpadReader& operator=(const TouchpadReader&) = delete;

    // Opens the touchpads present and starts the thread; a failure when none could be opened.
    std::optional<Failure> start();
    // Touchpads open now; readable from any thread.
    int openCount() const { return openCount_.load(); }

    // For tests: holds the thread before its next read (true) until released (false), so the
    // kernel's buffer can overflow. Returns once the thread is held.
    void holdForTesting(bool hold);

    // How long a node that appeared keeps being retried while it cannot be opened yet (udev may
    // still be granting access) or its device is not yet in sysfs, and how often.
    static constexpr double retryPeriod = 1.5;  // seconds
    static constexpr int retryInterval = 100;   // milliseconds

  private:
    using Clock = std::chrono::steady_clock;

    void run();
    void handleNodeChanges();
    void retryPending();
    // Opens the node if it is a touchpad; false when it should be tried again later.
    bool tryOpen(const std::string& node, int& error);
    void add(std::unique_ptr<EvdevTouchpad> touchpad);
    // The open touchpad reading this descriptor, or nothing.
    EvdevTouchpad* touchpadOn(int fd) const;
    void remove(int fd);
    void readFrom(EvdevTouchpad& touchpad);
    std::vector<Contact> allContacts() const;
    void waitWhileHeld();

    Publish publish_;
    Count count_;
    TouchpadFinder finder_;
    int epoll_ = -1;
    int inotify_ = -1;
    int wake_ = -1;
    std::int64_t nextIdBase_ = 0;
    std::vector<std::unique_ptr<EvdevTouchpad>> touchpads_;  // in opening order
    struct Pending {
        Clock::time_point giveUp;
        int error = 0;  // of the last attempt to open it
    };
    std::map<std::string, Pending> pending_;  // nodes that appeared and could not be opened yet
    Clock::time_point nextRetry_;
    std::atomic<int> openCount_ = 0;
    std::set<std::string> refused_;  // nodes already logged as refused
    std::thread thread_;
    std::mutex holdMutex_;
    std::condition_variable holdChanged_;
    bool hold_ = false;
    bool held_ = false;
    bool stopping_ = false;
};

}  // namespace ostrelle
