// Frames through the whole engine: touch source → recognizer → decision → action on a no-op system.
#include <benchmark/benchmark.h>

#include <array>
#include <cmath>
#include <filesystem>
#include <vector>

#include "actions/no_op_system_port.h"
#include "circling_hand.h"
#include "engine/gesture_engine.h"
#include "engine/inert_hot_key_registrar.h"
#include "engine/replay_touch_source.h"
#include "support/scratch_folder.h"
#include "support/virtual_clock_queue.h"

namespace ostrelle {
namespace {

// Everything an engine needs, with the bindings in a scratch folder.
struct EngineRig {
    EngineRig() {
        store.emplace(folder / "bindings.json", false);
        engine.emplace(GestureEngine::Services{*store, source, system, queue, settings, hotKeys});
    }
    ~EngineRig() {
        engine.reset();
        store.reset();
    }

    ScratchFolder folder{"ostrelle-bench"};
    std::optional<BindingStore> store;
    ReplayTouchSource source;
    NoOpSystemPort system;
    VirtualClockQueue queue;
    InMemorySettings settings;
    InertHotKeyRegistrar hotKeys;
    std::optional<GestureEngine> engine;
};

void BM_EngineThreeFingerSession(benchmark::State& state) {
    EngineRig rig;
    constexpr int period = 4096;
    const auto frames = bench::circlingHand(period);
    double time = 0;
    std::size_t i = 0;
    for (auto _ : state) {
        rig.source.deliverFrame(frames[i], time);
        time += 0.008;
        i = (i + 1) % period;
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_EngineThreeFingerSession);

// A whole bound three-finger tap, from landing to the posted keys (the seeded "3.tap" opens a tab).
void BM_EngineTapToAction(benchmark::State& state) {
    EngineRig rig;
    const std::array<Contact, 3> hand{{{1, 0.4, 0.5}, {2, 0.5, 0.5}, {3, 0.6, 0.5}}};
    double time = 0;
    for (auto _ : state) {
        rig.source.deliverFrame(hand, time);
        rig.source.deliverFrame({}, time + 0.1);
        time += 1.0;
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_EngineTapToAction);

}  // namespace
}  // namespace ostrelle
