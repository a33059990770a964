#pragma once

#include <memory>
#include <string>
#include <vector>

struct udev;

namespace ostrelle {

// Finds the touchpads among the input event nodes. Where udev's daemon runs, its verdict
// (ID_INPUT_TOUCHPAD, which honours the hardware database's corrections) decides; elsewhere
// (containers, a bare kernel) the device's capabilities in sysfs do. Neither needs permission on
// the node itself.
class TouchpadFinder {
  public:
    enum class Verdict { touchpad, other, unknown };

    TouchpadFinder();
    ~TouchpadFinder();
    TouchpadFinder(const TouchpadFinder&) = delete;
    TouchpadFinder& operator=(const TouchpadFinder&) = delete;

    // The nodes (/dev/input/eventN) of every touchpad present now.
    std::vector<std::string> touchpads() const;
    // What the node named `eventN` is; unknown while its device is not (or no longer) in sysfs.
    Verdict classify(const std::string& sysname) const;

    static constexpr const char* inputFolder = "/dev/input";
    // True for the names of event nodes (eventN), the only nodes read.
    static bool isEventNode(const std::string& name);

  private:
    struct Release {
        void operator()(udev* handle) const;
    };
    std::unique_ptr<udev, Release> udev_;
};

}  // namespace ostrelle
