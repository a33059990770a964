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

using namespace evdev;
using Deliveries = std::vector<std::optional<std::vector<Contact>>>;  // a click as nothing

// Whether the kernel passes a report on: only when some value in it changed (it drops unchanged
// values, and a report with nothing before it). Without slots it passes every multitouch value.
class KernelFilter {
  public:
    explicit KernelFilter(bool protocolA) : protocolA_(protocolA) {}

    bool passes(const EvdevEvent& event) {
        constexpr std::uint16_t miscellaneous = 0x04;  // EV_MSC: passed on even when unchanged
        if (event.type == EV_SYN && event.code == SYN_MT_REPORT) changed_ = true;
        if (event.type == EV_SYN) return event.code == SYN_REPORT && std::exchange(changed_, false);
        if (!protocolA_ && event.type == EV_ABS && event.code == ABS_MT_SLOT) {
            slot_ = event.value;
            return false;
        }
        const bool multitouch = event.type == EV_ABS && event.code > ABS_MT_SLOT;
        const auto initial = multitouch && event.code == ABS_MT_TRACKING_ID ? -1 : 0;
        const auto [entry, added] =
            values_.try_emplace({event.type, event.code, multitouch ? slot_ : 0}, initial);
        if (event.type == miscellaneous || (multitouch && protocolA_) || entry->second != event.value)
            changed_ = true;
        entry->second = event.value;
        return false;
    }

  private:
    std::map<std::tuple<std::uint16_t, std::uint16_t, std::int32_t>, std::int32_t> values_;
    bool protocolA_;
    std::int32_t slot_ = 0;
    bool changed_ = false;
};

TEST(RecordingReplay, TheLiveSourceDeliversTheFramesTheAssemblerMakesOfTheFile) {
    const char* folder = std::getenv("OSTRELLE_RECORDINGS_DIR");
    const char* recordings[] = {
        "CyPS2 Cypress Trackpad.three_finger_tap.events",  // two slots, the third finger a stand-in
        "CyPS2 Cypress Trackpad.two_finger_press.events", "ETPS2 Elantech Touchpad.Samsung-700Z3A.events",
        "bcm5974.three-finger-click.events",  // protocol A, through mtdev
    };
    for (const char* name : recordings) {
        const std::string path =
            std::string(folder != nullptr ? folder : "tests/recordings") + "/evemu-devices/" + name;
        testing::UinputDevice pad(testing::EvemuDescription{path});
        EpollMainQueue queue;
        EvdevTouchSource source(queue);
        testing::Delivered delivered;
        ASSERT_EQ(source.start(delivered.onFrame(), delivered.onClick()), std::nullopt) << name;

        // What the assembler makes of the file, through mtdev for a device without slots, as a
        // replay of the file does.
        std::ifstream file(path);
        const auto reader = openEvdevRecording(RecordingFormat::evemu, file);
        const RecordedDevice device = reader->device().value();
        const bool protocolA = device.description.slots == 0;
        std::optional<MtdevBridge> bridge;
        if (protocolA) bridge.emplace(device.multitouchAxes);
        FrameAssembler assembler(device.description, 0);
        Deliveries expected;
        // One report at a time, each read before the next, as a driver paces them: a flood
        // would overflow the reader's buffer.
        KernelFilter filter(protocolA);
        std::int64_t reports = 0;
        while (const auto event = reader->next()) {
            for (const EvdevEvent& slotted : bridge ? bridge->feed(*event) : std::span(&*event, 1)) {
                const FrameAssembler::Output output = assembler.feed(slotted);
                if (output.frame)
                    expected.emplace_back(
                        std::vector(assembler.contacts().begin(), assembler.contacts().end()));
                expected.insert(expected.end(), static_cast<std::size_t>(output.clicks), std::nullopt);
            }
            pad.write(event->type, event->code, event->value);
            if (filter.passes(*event)) {
                ASSERT_TRUE(testing::waitForReports(queue, source, ++reports)) << name;
            }
        }
        ASSERT_GE(expected.size(), 2U) << name;
        Deliveries live;
        for (const auto& item : delivered.items) live.push_back(item.frame);
        EXPECT_EQ(live, expected) << name;
    }
}

}  // namespace
}  // namespace ostrelle
