// Multitouch protocol A through mtdev into the frame assembler.
#include "platform/linux/mtdev_bridge.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

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
        {2.0, {{900, 400}}},  // the left finger lifted: the right one keeps its id
        {2.5, {}},
    };
    std::vector<std::string> out;
    std::vector<std::int64_t> ids;
    for (const Report& report : reports) {
        std::vector<EvdevEvent> events;
        for (const auto& [x, y] : report.contacts) {
            events.push_back({report.time, EV_ABS, ABS_MT_TOUCH_MAJOR, 300});
            events.push_back({report.time, EV_ABS, ABS_MT_POSITION_X, x});
            events.push_back({report.time, EV_ABS, ABS_MT_POSITION_Y, y});
            events.push_back({report.time, EV_SYN, SYN_MT_REPORT, 0});
        }
        if (report.contacts.empty()) events.push_back({report.time, EV_SYN, SYN_MT_REPORT, 0});
        if (report.click) events.push_back({report.time, EV_KEY, BTN_LEFT, 1});
        events.push_back({report.time, EV_SYN, SYN_REPORT, 0});
        for (const EvdevEvent& event : events) {
            for (const EvdevEvent& converted : bridge.feed(event)) {
                const auto result = assembler.feed(converted);
                if (result.frame) {
                    std::string frame = fmt::format("{:g}:", result.time);
                    for (const Contact& c : assembler.contacts()) {
                        frame += fmt::format(" {:g},{:g}", c.x, c.y);
                        ids.push_back(c.id);
                    }
                    out.push_back(frame);
                }
                if (result.clicks > 0) out.push_back(fmt::format("{:g}: click", result.time));
            }
        }
    }
    EXPECT_EQ(out, (std::vector<std::string>{"1: 0.1,0.2 0.9,0.8", "1.5: 0.11,0.2 0.9,0.8", "1.5: click",
                                             "2: 0.9,0.8", "2.5:"}));
    // The right finger kept one id from landing to lift; the left one had another.
    ASSERT_EQ(ids.size(), 5u);
    EXPECT_EQ(ids[1], ids[3]);
    EXPECT_EQ(ids[1], ids[4]);
    EXPECT_NE(ids[0], ids[1]);
}

}  // namespace
}  // namespace ostrelle
