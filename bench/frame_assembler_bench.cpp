// Frame assembler throughput on the stream a touchpad sends while three fingers move.
#include <benchmark/benchmark.h>

#include <cmath>
#include <vector>

#include "touchpad/frame_assembler.h"

namespace ostrelle {
namespace {

using namespace evdev;

// Three fingers land, circle for `reports` reports at 125 Hz with pressure and the legacy
// single-touch axes as real pads send them, and lift.
std::vector<EvdevEvent> threeFingerStream(int reports) {
    std::vector<EvdevEvent> events;
    double time = 0;
    auto add = [&](std::uint16_t type, std::uint16_t code, std::int32_t value) {
        events.push_back({time, type, code, value});
    };
    for (int s = 0; s < 3; ++s) add(EV_ABS, ABS_MT_SLOT, s), add(EV_ABS, ABS_MT_TRACKING_ID, 100 + s);
    add(EV_KEY, BTN_TOUCH, 1);
    add(EV_KEY, BTN_TOOL_TRIPLETAP, 1);
    for (int r = 0; r < reports; ++r) {
        for (int s = 0; s < 3; ++s) {
            add(EV_ABS, ABS_MT_SLOT, s);
            add(EV_ABS, ABS_MT_POSITION_X, 2000 + 800 * s + int(600 * std::cos(r * 0.05)));
            add(EV_ABS, ABS_MT_POSITION_Y, 2500 + int(600 * std::sin(r * 0.05)));
            add(EV_ABS, ABS_MT_PRESSURE, 40 + (r + s) % 7);
        }
        add(EV_ABS, ABS_X, 2000 + int(600 * std::cos(r * 0.05)));
        add(EV_ABS, ABS_Y, 2500 + int(600 * std::sin(r * 0.05)));
        add(EV_SYN, SYN_REPORT, 0);
        time += 0.008;
    }
    for (int s = 0; s < 3; ++s) add(EV_ABS, ABS_MT_SLOT, s), add(EV_ABS, ABS_MT_TRACKING_ID, -1);
    add(EV_KEY, BTN_TOUCH, 0);
    add(EV_KEY, BTN_TOOL_TRIPLETAP, 0);
    add(EV_SYN, SYN_REPORT, 0);
    return events;
}

void BM_AssembleThreeFingerStream(benchmark::State& state) {
    const TouchpadDescription pad{"bench pad", AxisRange{0, 6000, 40}, AxisRange{0, 5000, 40}, 5, false};
    FrameAssembler assembler(pad, 0);
    const std::vector<EvdevEvent> events = threeFingerStream(1000);
    for (auto _ : state) {
        int frames = 0;
        for (const EvdevEvent& event : events) frames += assembler.feed(event).frame;
        benchmark::DoNotOptimize(frames);
    }
    state.SetItemsProcessed(state.iterations() * std::int64_t(events.size()));
}
BENCHMARK(BM_AssembleThreeFingerStream);

}  // namespace
}  // namespace ostrelle
