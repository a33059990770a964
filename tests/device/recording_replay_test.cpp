// A real touchpad's recording played into a uinput copy of that touchpad: the live source
// delivers the frames the assembler makes of the file itself, so replays show what the service
// would have seen.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>

#include "platform/linux/evdev_touch_source.h"
#include "platform/linux/evdev_touchpad.h"
#include "touch_delivery.h"
#include "uinput_device.h"

namespace ostrelle {
namespace {

using testing::Delivered;
using testing::TestMainQueue;
using testing::UinputDevice;

std::string recordingsFolder() {
    const char* folder = std::getenv("OSTRELLE_RECORDINGS_DIR");
    return std::string(folder != nullptr ? folder : "tests/recordings") + "/evemu-devices/";
}

// The "E: SECONDS TYPE CODE VALUE" lines of an evemu recording (type and code in hex).
std::vector<EvdevEvent> recordedEvents(const std::string& path) {
    std::ifstream file(path);
    std::vector<EvdevEvent> events;
    std::string line;
    while (std::getline(file, line)) {
        if (!line.starts_with("E: ")) continue;
        std::istringstream fields(line.substr(3));
        double time = 0;
        std::string type, code;
        std::int32_t value = 0;
        fields >> time >> type >> code >> value;
        events.push_back({time, static_cast<std::uint16_t>(std::stoul(type, nullptr, 16)),
                          static_cast<std::uint16_t>(std::stoul(code, nullptr, 16)), value});
    }
    return events;
}

// EV_MSC: passed on even when unchanged.
constexpr std::uint16_t miscellaneousEvents = 0x04;

// Whether the kernel passes a report on: only when some value in it changed (it drops unchanged
// values, and a report with nothing before it).
class KernelFilter {
  public:
    bool passes(const EvdevEvent& event) {
        if (event.type == evdev::EV_SYN) {
            const bool any = changed_;
            changed_ = false;
            return event.code == evdev::SYN_REPORT && any;
        }
        if (event.type == evdev::EV_ABS && event.code == evdev::ABS_MT_SLOT) {
            slot_ = event.value;
            return false;
        }
        const bool perSlot = event.type == evdev::EV_ABS && event.code > evdev::ABS_MT_SLOT;
        const auto key = std::tuple(event.type, event.code, perSlot ? slot_ : 0);
        const auto initial = perSlot && event.code == evdev::ABS_MT_TRACKING_ID ? -1 : 0;
        const auto [entry, added] = values_.try_emplace(key, initial);
        if (event.type != miscellaneousEvents && entry->second == event.value) return false;
        entry->second = event.value;
        changed_ = true;
        return false;
    }

  private:
    std::map<std::tuple<std::uint16_t, std::uint16_t, std::int32_t>, std::int32_t> values_;
    std::int32_t slot_ = 0;
    bool changed_ = false;
};

TouchpadDescription describeNode(const std::string& node) {
    const EvdevTouchpad::Opened opened = EvdevTouchpad::open(node, 0);
    return opened.touchpad ? opened.touchpad->description() : TouchpadDescription{};
}

TEST(RecordingReplay, TheLiveSourceDeliversTheFramesTheAssemblerMakesOfTheFile) {
    const char* recordings[] = {
        "CyPS2 Cypress Trackpad.three_finger_tap.events",  // two slots, the third finger a stand-in
        "CyPS2 Cypress Trackpad.two_finger_press.events",
        "ETPS2 Elantech Touchpad.Samsung-700Z3A.events",
    };
    for (const char* name : recordings) {
        const std::string path = recordingsFolder() + name;
        const auto pad = UinputDevice::fromEvemuDescription(path);
        const std::vector<EvdevEvent> events = recordedEvents(path);
        ASSERT_FALSE(events.empty()) << name;

        // Frames, and clicks as nothing.
        std::vector<std::optional<std::vector<Contact>>> expected;
        FrameAssembler assembler(describeNode(pad->node()), 0);
        for (const EvdevEvent& event : events) {
            const FrameAssembler::Output output = assembler.feed(event);
            if (output.frame)
                expected.emplace_back(
                    std::vector<Contact>(assembler.contacts().begin(), assembler.contacts().end()));
            expected.insert(expected.end(), static_cast<std::size_t>(output.clicks), std::nullopt);
        }
        ASSERT_GE(expected.size(), 2U) << name;

        TestMainQueue queue;
        EvdevTouchSource source(queue);
        Delivered delivered;
        ASSERT_EQ(source.start(delivered.onFrame(), delivered.onClick()), std::nullopt) << name;
        // One report at a time, each read before the next, as a driver paces them: a flood
        // would overflow the reader's buffer.
        KernelFilter filter;
        std::int64_t reports = 0;
        for (const EvdevEvent& event : events) {
            pad->write(event.type, event.code, event.value);
            if (filter.passes(event)) {
                ASSERT_TRUE(waitForReports(queue, source, ++reports)) << name;
            }
        }
        std::vector<std::optional<std::vector<Contact>>> live;
        for (const auto& item : delivered.items) live.push_back(item.frame);
        EXPECT_EQ(live, expected) << name;
    }
}

}  // namespace
}  // namespace ostrelle
