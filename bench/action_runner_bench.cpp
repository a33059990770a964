// The runner's own cost for one gesture: catalog lookup, permission check, remap and the key
// pair, with a system that takes the events and does nothing.
#include <benchmark/benchmark.h>

#include "actions/action_runner.h"
#include "actions/no_op_system_port.h"
#include "support/virtual_clock_queue.h"

namespace ostrelle {
namespace {

void BM_RunPlainShortcut(benchmark::State& state) {
    NoOpSystemPort system;
    VirtualClockQueue queue;
    ActionRunner runner(system, queue, ActionHost{});
    const ActionRef copy{"system", "copy", std::nullopt, std::nullopt};  // ⌘C, near the end of the catalog
    for (auto _ : state) {
        runner.run(copy);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_RunPlainShortcut);

}  // namespace
}  // namespace ostrelle
