#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "support/log.h"
#include "support/scratch_folder.h"

namespace {

namespace fs = std::filesystem;

// The shared log pointed at a throw-away folder for the length of one benchmark.
class ScratchLog {
  public:
    ScratchLog() { ostrelle::Log::setFileURL(folder_ / "Ostrelle" / "Ostrelle.log"); }
    ~ScratchLog() { ostrelle::Log::flush(); }
    ScratchLog(const ScratchLog&) = delete;
    ScratchLog& operator=(const ScratchLog&) = delete;

  private:
    ostrelle::ScratchFolder folder_{"ostrelle-bench"};
};

// Entries are queued far faster than the disk takes them, so the writer stays busy throughout;
// a fixed count keeps the backlog, and the memory it holds, bounded.
constexpr benchmark::IterationCount callsPerRun = 200000;
constexpr int backlogBeforeTiming = 20000;  // entries queued before the clock starts

// Alternating texts so that no entry is dropped as a repeat: every one costs the writer a line.
void queueBacklog(const std::string& first, const std::string& second) {
    for (int i = 0; i < backlogBeforeTiming; ++i) ostrelle::Log::error(i % 2 == 0 ? first : second);
}

void LogErrorWhileWriterBusy(benchmark::State& state) {
    ScratchLog scratch;
    const std::string first = "action failed: no front application";
    const std::string second = "touch source failed: the event tap was disabled";
    queueBacklog(first, second);
    bool flip = false;
    for (auto _ : state) {
        ostrelle::Log::error(flip ? first : second);
        flip = !flip;
    }
}
BENCHMARK(LogErrorWhileWriterBusy)->Iterations(callsPerRun)->Unit(benchmark::kNanosecond);

// Messages past the short-string buffer also pay for one allocation on the caller's side.
void LogErrorLongMessageWhileWriterBusy(benchmark::State& state) {
    ScratchLog scratch;
    const std::string first(200, 'a');
    const std::string second(200, 'b');
    queueBacklog(first, second);
    bool flip = false;
    for (auto _ : state) {
        ostrelle::Log::error(flip ? first : second);
        flip = !flip;
    }
}
BENCHMARK(LogErrorLongMessageWhileWriterBusy)->Iterations(callsPerRun)->Unit(benchmark::kNanosecond);

}  // namespace
