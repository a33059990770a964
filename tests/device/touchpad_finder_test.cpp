// Which of the kernel's input devices are taken for touchpads, with no udev daemon running.
#include "platform/linux/touchpad_finder.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "uinput_device.h"

namespace ostrelle {
namespace {

using testing::DeviceShape;
using testing::UinputDevice;

TEST(TouchpadFinder, TakesTouchpadsAndLeavesOtherDevicesOut) {
    struct Row {
        const char* name;
        DeviceShape shape;
        bool touchpad;
    };
    const Row rows[] = {
        {"clickpad", {.name = "pad"}, true},
        {"two slots, no quint tap", {.name = "small pad", .slots = 2}, true},
        {"touch screen", {.name = "screen", .direct = true}, false},
        {"no multitouch axes", {.name = "old pad", .multitouch = false}, false},
        {"no finger tool", {.name = "tablet", .fingerTool = false}, false},
        {"keyboard", {.name = "keyboard", .keyboard = true}, false},
    };
    std::vector<std::unique_ptr<UinputDevice>> devices;
    for (const Row& row : rows) devices.push_back(std::make_unique<UinputDevice>(row.shape));

    const TouchpadFinder finder;
    const std::vector<std::string> found = finder.touchpads();
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        const std::string node = devices[i]->node();
        ASSERT_FALSE(node.empty()) << rows[i].name;
        EXPECT_EQ(std::ranges::count(found, node), rows[i].touchpad ? 1 : 0)
            << rows[i].name << " at " << node;
        EXPECT_EQ(finder.classify(node.substr(node.rfind('/') + 1)),
                  rows[i].touchpad ? TouchpadFinder::Verdict::touchpad : TouchpadFinder::Verdict::other)
            << rows[i].name;
    }
    EXPECT_EQ(finder.classify("event999"), TouchpadFinder::Verdict::unknown);
}

}  // namespace
}  // namespace ostrelle
