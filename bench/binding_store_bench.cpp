// Start-up cost of the binding store on the fullest file a user keeps: every built-in gesture
// bound, plus a hundred drawn shapes. Every start reads the whole file and writes it back
// normalized, so this is what that user waits for; load and rewrite should stay under 20 ms.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "gestures/gesture_catalog.h"
#include "store/binding_store.h"
#include "store/bindings_file.h"
#include "support/scratch_folder.h"

namespace ostrelle {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t drawnCount = 100;
constexpr int shapeFingers = 3;
constexpr double fixedCreatedAt = 753300000.25;  // seconds since 2001; any fixed date will do

// A wavy line with uneven coordinates, so that numbers are written with all their digits as a
// recorded drawing's are.
std::vector<Point> wave(std::size_t count, double phase) {
    std::vector<Point> points;
    for (std::size_t i = 0; i < count; ++i) {
        const double t = static_cast<double>(i) / static_cast<double>(count - 1);
        points.push_back(
            {std::round(t * 1000) / 1000, std::round((0.5 + 0.3 * std::sin(6 * t + phase)) * 1000) / 1000});
    }
    return points;
}

CustomShape shape(std::size_t index) {
    const double phase = static_cast<double>(index);
    std::vector<Stroke> strokes;
    for (int finger = 0; finger < shapeFingers; ++finger) {
        strokes.push_back(wave(CustomShape::strokePoints, phase + finger));
    }
    return CustomShape("Shape " + std::to_string(index), shapeFingers,
                       wave(CustomShape::templatePoints, phase), std::move(strokes));
}

// One binding for each enabled built-in gesture, then the drawn ones.
std::vector<GestureBinding> fullBindingList() {
    std::vector<Gesture> gestures = GestureCatalog::all();
    for (std::size_t i = 0; i < drawnCount; ++i) gestures.push_back(Gesture::newCustom(shape(i)));
    std::vector<GestureBinding> bindings;
    for (const Gesture& gesture : gestures) {
        const double createdAt = fixedCreatedAt + static_cast<double>(bindings.size());
        bindings.push_back(GestureBinding::make(gesture, ActionRef{"browsers", "back", {}, {}}, createdAt));
    }
    return bindings;
}

void BindingStoreLoadAndRewrite(benchmark::State& state) {
    ScratchFolder scratch;
    const fs::path file = scratch.path() / "bindings.json";
    const std::vector<GestureBinding> bindings = fullBindingList();
    const std::string bytes = encodeBindingsFile(bindings);
    std::ofstream(file, std::ios::binary) << bytes;

    for (auto _ : state) {
        const BindingStore store(file, false);
        const bool lost = store.bindings().size() != bindings.size();
        if (lost) state.SkipWithError("bindings were lost while loading");
        benchmark::DoNotOptimize(store.bindings().data());
    }
    state.counters["fileBytes"] = static_cast<double>(bytes.size());
}
BENCHMARK(BindingStoreLoadAndRewrite)->Unit(benchmark::kMillisecond);

// The two halves of a start without the disk, to see which one a slow start is waiting for.
void BindingsFileDecode(benchmark::State& state) {
    const std::string bytes = encodeBindingsFile(fullBindingList());
    for (auto _ : state) benchmark::DoNotOptimize(decodeBindingsFile(bytes));
}
BENCHMARK(BindingsFileDecode)->Unit(benchmark::kMillisecond);

void BindingsFileEncode(benchmark::State& state) {
    const std::vector<GestureBinding> bindings = fullBindingList();
    for (auto _ : state) benchmark::DoNotOptimize(encodeBindingsFile(bindings));
}
BENCHMARK(BindingsFileEncode)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace ostrelle
