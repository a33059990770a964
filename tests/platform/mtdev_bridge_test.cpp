// Multitouch protocol A through mtdev into the frame assembler.
#include "platform/linux/mtdev_bridge.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <algorithm>

#include "touchpad/frame_assembler.h"

namespace ostrelle {
namespace {

using namespace evdev;

// One protocol A report: each contact as its position and a SYN_MT_REPORT, then SYN_REPORT.
struct Report {
    double time;
    std::vector<std::pair<int, int>> contacts;
    bool click = false;
};

TEST(MtdevBridge, ProtocolAComesOutAsSlots) {
    const std::vector<MultitouchAxis> axes{{ABS_MT_TOUCH_MAJOR, {0, 2048, 0}},
                                           {ABS_MT_POSITION_X, {0, 1000, 0}},
                                           {ABS_MT_POSITION_Y, {0, 500, 0}}};
    const TouchpadDescription pad{"Apple pad", AxisRange{0, 1000, 0}, AxisRange{0, 500, 0}, 0, false};
    MtdevBridge bridge(axes);
    FrameAssembler assembler(pad, 0);

    const std::vector<Report> reports{
        {1.0, {{100, 100}, {900, 400}}},
        {1.5, {{110, 100}, {900, 400}}, true},
        {2.0, {{900, 400}}},
        {2.5, {}},
    };
    // Each contact as its position after a letter for its id, in order of first appearance.
    std::vector<std::string> out;
    std::vector<std::int64_t> ids;
    for (const Report& report : reports) {
        std::vector<EvdevEvent> events;
        for (const auto& [x, y] : report.contacts)
            events.insert(events.end(), {{report.time, EV_ABS, ABS_MT_TOUCH_MAJOR, 300},
                                         {report.time, EV_ABS, ABS_MT_POSITION_X, x},
                                         {report.time, EV_ABS, ABS_MT_POSITION_Y, y},
                                         {report.time, EV_SYN, SYN_MT_REPORT, 0}});
        if (report.contacts.empty()) events.push_back({report.time, EV_SYN, SYN_MT_REPORT, 0});
        if (report.click) events.push_back({report.time, EV_KEY, BTN_LEFT, 1});
        events.push_back({report.time, EV_SYN, SYN_REPORT, 0});
        for (const EvdevEvent& event : events) {
            for (const EvdevEvent& converted : bridge.feed(event)) {
                const auto result = assembler.feed(converted);
                std::string frame = fmt::format("{:g}:", result.time);
                for (const Contact& c : assembler.contacts()) {
                    if (std::ranges::count(ids, c.id) == 0) ids.push_back(c.id);
                    const auto letter = static_cast<char>('a' + (std::ranges::find(ids, c.id) - ids.begin()));
                    frame += fmt::format(" {}{:g},{:g}", letter, c.x, c.y);
                }
                if (result.frame) out.push_back(frame);
                if (result.clicks > 0) out.push_back(fmt::format("{:g}: click", result.time));
            }
        }
    }
    // The left finger lifting leaves the right one its id.
    EXPECT_EQ(out, (std::vector<std::string>{"1: a0.1,0.2 b0.9,0.8", "1.5: a0.11,0.2 b0.9,0.8", "1.5: click",
                                             "2: b0.9,0.8", "2.5:"}));
}

}  // namespace
}  // namespace ostrelle
