// A real touchpad's recording played into a uinput copy of that touchpad: the live source
// delivers the frames the assembler makes of the file itself, so replays show what the service
// would have seen.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <map>
#include <span>

#include "platform/linux/evdev_touch_source.h"
#include "platform/linux/mtdev_bridge.h"
#include "touch_delivery.h"
#include "touchpad/evdev_recording.h"
#include "touchpad/frame_assembler.h"
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

// A recording's events, and the frames and clicks (as nothing) the assembler makes of them,
// through mtdev for a device without slots, as a replay of the file does.
struct Expected {
    std::vector<EvdevEvent> events;
    std::vector<std::optional<std::vector<Contact>>> deliveries;
    bool protocolA = false;
};

Expected readRecording(const std::string& path) {
    std::ifstream file(path);
    const auto reader = openEvdevRecording(RecordingFormat::evemu, file);
    const RecordedDevice device = reader->device().value();
    Expected expected;
    expected.protocolA = device.description.slots == 0;
    std::unique_ptr<MtdevBridge> bridge;
    if (expected.protocolA) bridge = std::make_unique<MtdevBridge>(device.multitouchAxes);
    FrameAssembler assembler(device.description, 0);
    while (const auto event = reader->next()) {
        expected.events.push_back(*event);
        for (const EvdevEvent& slotted : bridge ? bridge->feed(*event) : std::span(&*event, 1)) {
            const FrameAssembler::Output output = assembler.feed(slotted);
            if (output.frame)
                expected.deliveries.emplace_back(
                    std::vector<Contact>(assembler.contacts().begin(), assembler.contacts().end()));
            expected.deliveries.insert(expected.deliveries.end(), static_cast<std::size_t>(output.clicks),
                                       std::nullopt);
        }
    }
    return expected;
}

// EV_MSC: passed on even when unchanged.
constexpr std::uint16_t miscellaneousEvents = 0x04;

// Whether the kernel passes a report on: only when some value in it changed (it drops unchanged
// values, and a report with nothing before it).
class KernelFilter {
  public:
    // Without slots, the kernel passes every multitouch value on.
    explicit KernelFilter(bool protocolA) : protocolA_(protocolA) {}

    bool passes(const EvdevEvent& event) {
        if (event.type == evdev::EV_SYN) {
            if (event.code == evdev::SYN_MT_REPORT) {
                changed_ = true;
                return false;
            }
            const bool any = changed_;
            changed_ = false;
            return event.code == evdev::SYN_REPORT && any;
        }
        if (!protocolA_ && event.type == evdev::EV_ABS && event.code == evdev::ABS_MT_SLOT) {
            slot_ = event.value;
            return false;
        }
        const bool multitouch = event.type == evdev::EV_ABS && event.code > evdev::ABS_MT_SLOT;
        const auto key = std::tuple(event.type, event.code, multitouch ? slot_ : 0);
        const auto initial = multitouch && event.code == evdev::ABS_MT_TRACKING_ID ? -1 : 0;
        const auto [entry, added] = values_.try_emplace(key, initial);
        const bool always = event.type == miscellaneousEvents || (multitouch && protocolA_);
        if (!always && entry->second == event.value) return false;
        entry->second = event.value;
        changed_ = true;
        return false;
    }

  private:
    std::map<std::tuple<std::uint16_t, std::uint16_t, std::int32_t>, std::int32_t> values_;
    bool protocolA_;
    std::int32_t slot_ = 0;
    bool changed_ = false;
};

TEST(RecordingReplay, TheLiveSourceDeliversTheFramesTheAssemblerMakesOfTheFile) {
    const char* recordings[] = {
        "CyPS2 Cypress Trackpad.three_finger_tap.events",  // two slots, the third finger a stand-in
        "CyPS2 Cypress Trackpad.two_finger_press.events", "ETPS2 Elantech Touchpad.Samsung-700Z3A.events",
        "bcm5974.three-finger-click.events",  // protocol A, through mtdev
    };
    for (const char* name : recordings) {
        const std::string path = recordingsFolder() + name;
        const auto pad = UinputDevice::fromEvemuDescription(path);
        const Expected expected = readRecording(path);
        ASSERT_GE(expected.deliveries.size(), 2U) << name;

        TestMainQueue queue;
        EvdevTouchSource source(queue);
        Delivered delivered;
        ASSERT_EQ(source.start(delivered.onFrame(), delivered.onClick()), std::nullopt) << name;
        // One report at a time, each read before the next, as a driver paces them: a flood
        // would overflow the reader's buffer.
        KernelFilter filter(expected.protocolA);
        std::int64_t reports = 0;
        for (const EvdevEvent& event : expected.events) {
            pad->write(event.type, event.code, event.value);
            if (filter.passes(event)) {
                ASSERT_TRUE(waitForReports(queue, source, ++reports)) << name;
            }
        }
        std::vector<std::optional<std::vector<Contact>>> live;
        for (const auto& item : delivered.items) live.push_back(item.frame);
        EXPECT_EQ(live, expected.deliveries) << name;
    }
}

}  // namespace
}  // namespace ostrelle
