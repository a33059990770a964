// The frame assembler on synthetic evdev streams: slots, palms, stand-ins, clicks, SYN_DROPPED.
#include "touchpad/frame_assembler.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <functional>
#include <string>
#include <vector>

namespace ostrelle {
namespace {

using namespace evdev;

// One step of a stream: an event, or a resync.
using Step = std::function<void(FrameAssembler&, std::vector<std::string>&)>;

// Frames read "T: ID@X,Y ..." ("-" when empty), stand-ins as "sN"; each click reads "T: click".
std::string describe(double time, std::span<const Contact> contacts) {
    std::string text = fmt::format("{:g}:", time);
    if (contacts.empty()) text += " -";
    for (const Contact& c : contacts) {
        const std::int64_t standIn = c.id - (std::int64_t{1} << 32);
        const std::string id = standIn >= 0 ? fmt::format("s{}", standIn) : fmt::format("{}", c.id);
        text += fmt::format(" {}@{:g},{:g}", id, c.x, c.y);
    }
    return text;
}

Step event(std::uint16_t type, std::uint16_t code, std::int32_t value) {
    return [=](FrameAssembler& assembler, std::vector<std::string>&) {
        const FrameAssembler::Output result = assembler.feed({0.0, type, code, value});
        EXPECT_FALSE(result.frame || result.clicks > 0) << "output before SYN_REPORT";
    };
}
Step syn(double time) {
    return [=](FrameAssembler& assembler, std::vector<std::string>& out) {
        const FrameAssembler::Output result = assembler.feed({time, EV_SYN, SYN_REPORT, 0});
        if (result.frame) out.push_back(describe(result.time, assembler.contacts()));
        for (int i = 0; i < result.clicks; ++i) out.push_back(fmt::format("{:g}: click", result.time));
    };
}
const auto slot = [](int n) { return event(EV_ABS, ABS_MT_SLOT, n); };
const auto id = [](int n) { return event(EV_ABS, ABS_MT_TRACKING_ID, n); };
const auto x = [](int v) { return event(EV_ABS, ABS_MT_POSITION_X, v); };
const auto y = [](int v) { return event(EV_ABS, ABS_MT_POSITION_Y, v); };
const auto palm = [](bool on) { return event(EV_ABS, ABS_MT_TOOL_TYPE, on ? MT_TOOL_PALM : MT_TOOL_FINGER); };
const auto pressure = [](int v) { return event(EV_ABS, ABS_MT_PRESSURE, v); };
const auto key = [](std::uint16_t code, int v) { return event(EV_KEY, code, v); };
const auto dropped = [] { return event(EV_SYN, SYN_DROPPED, 0); };
// A change made from outside, as after a live SYN_DROPPED.
Step resync(std::function<void(FrameAssembler&)> change) {
    return [=](FrameAssembler& assembler, std::vector<std::string>&) { change(assembler); };
}
// A finger in a slot, at device units (x in 100..1100, y in 0..500).
Step touch(int s, int trackingId, int px, int py) {
    return [=](FrameAssembler& assembler, std::vector<std::string>& out) {
        for (const Step& step : {slot(s), id(trackingId), x(px), y(py)}) step(assembler, out);
    };
}

struct Row {
    const char* name;
    std::vector<Step> steps;  // a report ends with syn
    std::vector<std::string> expected;
    int slots = 2;
};

TEST(FrameAssembler, Streams) {
    const std::vector<Row> rows = {
        {"a stream without ABS_MT_SLOT writes slot 0",
         {id(7), x(600), y(250), key(BTN_TOOL_FINGER, 1), syn(1), x(1100), syn(1.5), id(-1),
          key(BTN_TOOL_FINGER, 0), syn(2)},
         {"1: 7@0.5,0.5", "1.5: 7@1,0.5", "2: -"}},
        {"pressure-only reports emit nothing",
         {pressure(10), syn(0.5), touch(0, 1, 100, 0), syn(1), pressure(40), syn(1.1), key(BTN_TOUCH, 1),
          syn(1.2), id(-1), syn(2), pressure(5), syn(2.1)},
         {"1: 1@0,0", "2: -"}},
        {"contacts in slot order, slots reused",
         {touch(1, 10, 1100, 500), touch(0, 11, 100, 0), syn(1), slot(1), id(-1), syn(2),
          touch(1, 12, 600, 250), syn(3), slot(0), id(13), syn(4)},
         {"1: 11@0,0 10@1,1", "2: 11@0,0", "3: 11@0,0 12@0.5,0.5", "4: 13@0,0 12@0.5,0.5"},
         3},
        {"a slot outside the device is dropped and the previous one updated",
         {touch(1, 1, 100, 0), syn(1), slot(2), x(1100), slot(-1), y(500), syn(2)},
         {"1: 1@0,0", "2: 1@1,1"}},
        {"positions are clamped at the axis edges",
         {touch(0, 1, 99, -1), syn(1), x(1101), y(501), syn(2), x(100), y(0), syn(3), x(350), y(125), syn(4)},
         {"1: 1@0,0", "2: 1@1,1", "3: 1@0,0", "4: 1@0.25,0.25"},
         1},
        {"a palm is left out and counted as a slot in use",
         {touch(0, 1, 100, 0), touch(1, 2, 600, 250), palm(true), key(BTN_TOOL_DOUBLETAP, 1), syn(1),
          palm(false), syn(2), slot(0), palm(true), syn(3)},
         {"1: 1@0,0", "2: 1@0,0 2@0.5,0.5", "3: 2@0.5,0.5"}},
        {"stand-ins sit on the highest slot, keep their ids and take new ones when they return",
         {touch(0, 1, 100, 0), touch(1, 2, 600, 250), key(BTN_TOOL_TRIPLETAP, 1), syn(1), x(1100), syn(2),
          key(BTN_TOOL_QUADTAP, 1), key(BTN_TOOL_TRIPLETAP, 0), syn(3), key(BTN_TOOL_TRIPLETAP, 1),
          key(BTN_TOOL_QUADTAP, 0), syn(4), key(BTN_TOOL_DOUBLETAP, 1), key(BTN_TOOL_TRIPLETAP, 0), syn(5),
          key(BTN_TOOL_TRIPLETAP, 1), key(BTN_TOOL_DOUBLETAP, 0), syn(6)},
         {"1: 1@0,0 2@0.5,0.5 s0@0.5,0.5", "2: 1@0,0 2@1,0.5 s0@1,0.5", "3: 1@0,0 2@1,0.5 s0@1,0.5 s1@1,0.5",
          "4: 1@0,0 2@1,0.5 s0@1,0.5", "5: 1@0,0 2@1,0.5", "6: 1@0,0 2@1,0.5 s2@1,0.5"}},
        {"the highest tool held gives the count; stand-ins need a contact and skip palms",
         {key(BTN_TOOL_TRIPLETAP, 1), syn(1), touch(0, 1, 100, 0), touch(1, 2, 600, 250), palm(true),
          key(BTN_TOOL_FINGER, 1), syn(2), key(BTN_TOOL_TRIPLETAP, 0), syn(3)},
         {"2: 1@0,0 s0@0,0", "3: 1@0,0"}},
        {"a press is a click after the report's frame; releases and repeats of a held button are not",
         {touch(0, 1, 100, 0), key(BTN_LEFT, 1), syn(1), key(BTN_LEFT, 0), syn(2), key(BTN_RIGHT, 1),
          key(BTN_MIDDLE, 1), key(BTN_LEFT, 2), syn(3), id(-1), key(BTN_LEFT, 1), syn(4)},
         {"1: 1@0,0", "1: click", "3: click", "3: click", "4: -", "4: click"}},
        {"SYN_DROPPED drops up to the next report; a recording keeps its state",
         {touch(0, 1, 100, 0), syn(1), x(350), key(BTN_LEFT, 1), dropped(), x(600), key(BTN_RIGHT, 1), syn(2),
          syn(3), dropped(), syn(4), syn(5)},
         {"1: 1@0,0", "3: 1@0.25,0"}},
        {"after SYN_DROPPED a live device sets the state afresh",
         {touch(0, 1, 100, 0), syn(1), dropped(), syn(2), resync([](FrameAssembler& a) {
              a.setSlot(0, -1, 0, 0, 0);
              a.setSlot(2, 4, 1100, 500, MT_TOOL_FINGER);
              a.setCurrentSlot(2);
              a.setFingerCount(2);
          }),
          syn(3), x(600), syn(4)},
         {"1: 1@0,0", "3: 4@1,1 s0@1,1", "4: 4@0.5,1 s0@0.5,1"},
         3},
    };
    for (const Row& row : rows) {
        TouchpadDescription pad{"pad", AxisRange{100, 1100, 10}, AxisRange{0, 500, 10}, row.slots, false};
        FrameAssembler assembler(pad, 0);
        std::vector<std::string> out;
        for (const Step& step : row.steps) step(assembler, out);
        EXPECT_EQ(out, row.expected) << row.name;
    }
}

TEST(FrameAssembler, IdsOfTwoTouchpadsNeverMeet) {
    TouchpadDescription pad{"pad", AxisRange{0, 100, 0}, AxisRange{0, 100, 0}, 1, false};
    FrameAssembler first(pad, 0);
    FrameAssembler second(pad, FrameAssembler::idSpan);
    for (FrameAssembler* a : {&first, &second}) {
        a->feed({0, EV_ABS, ABS_MT_TRACKING_ID, 0x7fffffff});
        a->feed({0, EV_KEY, BTN_TOOL_QUINTTAP, 1});
        a->feed({0, EV_SYN, SYN_REPORT, 0});
    }
    ASSERT_EQ(first.contacts().size(), 5u);
    EXPECT_LT(first.contacts().back().id, second.contacts().front().id);
    EXPECT_LT(first.contacts().front().id, first.contacts()[1].id);
}

TEST(FrameAssembler, Refusal) {
    const AxisRange range{0, 100, 0};
    for (const auto& [device, says] : std::vector<std::pair<TouchpadDescription, const char*>>{
             {{"Mouse", std::nullopt, range, 0, false}, "\"Mouse\" has no multitouch position axes"},
             {{"", range, std::nullopt, 2, false}, "the device has no multitouch position axes"},
             {{"Pad", range, AxisRange{5, 5, 0}, 2, false}, "declares an empty range"},
             {{"Pad", range, range, 0, false}, "none"},
         }) {
        EXPECT_THAT(FrameAssembler::refusal(device).value_or("none"), ::testing::HasSubstr(says)) << says;
    }
}

}  // namespace
}  // namespace ostrelle
