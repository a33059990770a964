// From sending Ctrl+T to an X client receiving the T key press, under a private Xvfb: running
// `xdotool key` once per action, as several Linux gesture tools do, against our own path, in one
// run so that both see the same machine.
#include <benchmark/benchmark.h>
#include <linux/input-event-codes.h>
#include <spawn.h>
#include <sys/wait.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/linux/xtest_key_output.h"
#include "platform/x11_test_window.h"
#include "platform/xvfb_server.h"

namespace ostrelle {
namespace {

using Clock = std::chrono::steady_clock;
using testing::XInputEvent;

constexpr unsigned xOffset = 8;

// One X server and one receiving window for every benchmark of the run.
struct Stage {
    testing::XvfbServer server;
    testing::X11TestWindow window{server.display()};
};
Stage& stage() {
    static Stage shared;
    return shared;
}

// Times each `send` until the window receives T's press; `settle`, untimed, cleans up after it.
// Reports the median of the rounds besides the mean.
void measureKeyDelivery(benchmark::State& state, const std::function<void()>& send,
                        const std::function<void()>& settle = {}) {
    testing::X11TestWindow& window = stage().window;
    const auto is = [](const std::optional<XInputEvent>& event, XInputEvent::Kind kind, unsigned code) {
        return event->kind == kind && event->code == code + xOffset;
    };
    std::vector<double> rounds;
    for (auto _ : state) {
        const auto start = Clock::now();
        send();
        std::optional<XInputEvent> event;
        while ((event = window.next()) && !is(event, XInputEvent::Kind::keyPress, KEY_T)) {
        }
        const std::chrono::duration<double> took = Clock::now() - start;
        if (!event) {
            state.SkipWithError("the T key press did not arrive");
            break;
        }
        state.SetIterationTime(took.count());
        rounds.push_back(took.count());
        // The rest of the chord, so that the next round starts with nothing held.
        while ((event = window.next()) && !is(event, XInputEvent::Kind::keyRelease, KEY_LEFTCTRL)) {
        }
        if (settle) settle();
    }
    if (rounds.empty()) return;
    std::ranges::nth_element(rounds, rounds.begin() + static_cast<std::ptrdiff_t>(rounds.size() / 2));
    state.counters["median_us"] = rounds[rounds.size() / 2] * 1e6;
}

void BM_KeyDeliveryByXdotoolProcess(benchmark::State& state) {
    const std::string display = "DISPLAY=" + stage().server.display();
    pid_t child = -1;
    const auto send = [&] {
        std::string program = "xdotool", command = "key", keys = "ctrl+t", path = "PATH=/usr/bin:/bin";
        char* arguments[] = {program.data(), command.data(), keys.data(), nullptr};
        char* environment[] = {const_cast<char*>(display.c_str()), path.data(), nullptr};
        if (posix_spawnp(&child, "xdotool", nullptr, nullptr, arguments, environment) != 0)
            throw std::runtime_error("cannot run xdotool (is the xdotool package installed?)");
    };
    measureKeyDelivery(state, send, [&] { waitpid(child, nullptr, 0); });
}
BENCHMARK(BM_KeyDeliveryByXdotoolProcess)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond)
    ->Iterations(20)
    ->Repetitions(5)
    ->ReportAggregatesOnly(true);

void BM_KeyDeliveryByXTestOutput(benchmark::State& state) {
    auto made = XTestKeyOutput::create(stage().server.display());
    auto* output = std::get_if<std::unique_ptr<XTestKeyOutput>>(&made);
    if (output == nullptr) {
        state.SkipWithError(std::get<std::string>(made).c_str());
        return;
    }
    measureKeyDelivery(state, [&] {
        for (const auto& [code, down] :
             {std::pair{KEY_LEFTCTRL, true}, {KEY_T, true}, {KEY_T, false}, {KEY_LEFTCTRL, false}})
            (*output)->postKeyCode(static_cast<std::uint16_t>(code), down);
    });
}
BENCHMARK(BM_KeyDeliveryByXTestOutput)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond)
    ->Iterations(500)
    ->Repetitions(5)
    ->ReportAggregatesOnly(true);

}  // namespace
}  // namespace ostrelle
