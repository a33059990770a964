// The editor's live trackpad while recording: each 125 Hz frame through the capturing engine,
// its live trace, and one full paint of the preview (the worst case: a repaint for every frame,
// where Qt would fold those that come faster than the screen). Keeping up means well under 8 ms.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QImage>
#include <QPainter>

#include "actions/no_op_system_port.h"
#include "app/trackpad_preview.h"
#include "circling_hand.h"
#include "engine/gesture_engine.h"
#include "engine/inert_hot_key_registrar.h"
#include "engine/replay_touch_source.h"
#include "support/scratch_folder.h"
#include "support/virtual_clock_queue.h"

namespace ostrelle {
namespace {

QApplication& application() {
    static int argc = 1;
    static char name[] = "ostrelle-bench";
    static char* argv[] = {name, nullptr};
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static QApplication instance(argc, argv);
    return instance;
}

void BM_LivePreviewFrame(benchmark::State& state) {
    application();
    const ScratchFolder folder("ostrelle-bench");
    BindingStore store(folder / "bindings.json", false);
    ReplayTouchSource source;
    NoOpSystemPort system;
    VirtualClockQueue queue;
    InMemorySettings settings;
    InertHotKeyRegistrar hotKeys;
    GestureEngine engine({store, source, system, queue, settings, hotKeys});
    engine.setCapturing(true);
    app::TrackpadPreview preview(engine.liveTrace());
    preview.resize(preview.sizeHint());
    QImage canvas(preview.size(), QImage::Format_ARGB32_Premultiplied);

    constexpr int period = 4096;
    const auto frames = bench::circlingHand(period);
    double time = 0;
    std::size_t i = 0;
    for (auto _ : state) {
        source.deliverFrame(frames[i], time);
        QPainter painter(&canvas);
        preview.render(&painter);
        time += 0.008;
        i = (i + 1) % period;
    }
    state.SetItemsProcessed(state.iterations());
    engine.setCapturing(false);
}
BENCHMARK(BM_LivePreviewFrame);

}  // namespace
}  // namespace ostrelle
