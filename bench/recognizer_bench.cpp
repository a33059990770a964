// Recognizer throughput on the per-frame path, and the cost of matching at session end.
#include <benchmark/benchmark.h>

#include <array>
#include <cmath>
#include <vector>

#include "circling_hand.h"
#include "recognition/gesture_recognizer.h"
#include "recognition/shape_matching.h"

namespace ostrelle {
namespace {

// Three fingers circling slowly: a steady moving session that evaluates every in-session rule.
void BM_ProcessThreeFingerSession(benchmark::State& state) {
    GestureRecognizer recognizer;
    constexpr int period = 4096;
    const auto frames = bench::circlingHand(period);
    double time = 0;
    std::size_t i = 0;
    for (auto _ : state) {
        auto gesture = recognizer.process(frames[i], time);
        benchmark::DoNotOptimize(gesture);
        time += 0.008;
        i = (i + 1) % period;
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_ProcessThreeFingerSession);

// A session whose 1024-point hand path is matched against 100 three-finger shapes when the fingers lift.
void BM_SessionEndMatching(benchmark::State& state) {
    GestureRecognizer ready;
    for (int s = 0; s < 100; ++s) {
        std::vector<Point> drawing;
        for (int k = 0; k < 40; ++k)
            drawing.push_back({std::cos(k * 0.1 * (1 + s % 7)), std::sin(k * 0.13 * (1 + s % 5))});
        Gesture shape = Gesture::newCustom(shapes::fromDrawing(3, drawing, {drawing}));
        shape.custom->name = "shape";
        ready.customs.push_back(shape);
    }
    double time = 0;
    for (int i = 0; i < 1100; ++i) {
        // A wide spiral: each frame moves the centroid past the path step, so the path fills up.
        const double r = 0.05 + 0.0002 * i;
        const double cx = 0.5 + r * std::cos(i * 0.15);
        const double cy = 0.5 + r * std::sin(i * 0.15);
        const std::array<Contact, 3> frame{{{1, cx - 0.05, cy}, {2, cx, cy - 0.02}, {3, cx + 0.05, cy}}};
        ready.process(frame, time += 0.008);
    }
    if (ready.pathCount() != GestureRecognizer::maxPathPoints) state.SkipWithError("hand path not full");
    for (auto _ : state) {
        state.PauseTiming();
        GestureRecognizer recognizer = ready;
        state.ResumeTiming();
        auto gesture = recognizer.process({}, time + 0.008);
        benchmark::DoNotOptimize(gesture);
    }
}
BENCHMARK(BM_SessionEndMatching)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace ostrelle
