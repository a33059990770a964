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

#include "actions/linux_actions.h"
#include "actions/no_op_system_port.h"
#include "engine/gesture_engine.h"
#include "engine/inert_hot_key_registrar.h"
#include "engine/replay_touch_source.h"
#include "platform/linux/linux_system_port.h"
#include "platform/linux/xtest_key_output.h"
#include "platform/x11_test_window.h"
#include "platform/xvfb_server.h"
#include "support/scratch_folder.h"
#include "support/virtual_clock_queue.h"

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

// Times each `send` until the window receives T's press; `prepare` and `settle`, untimed, come
// before and after it. Reports the median of the rounds besides the mean.
void measureKeyDelivery(benchmark::State& state, const std::function<void()>& send,
                        const std::function<void()>& settle = {}, const std::function<void()>& prepare = {}) {
    testing::X11TestWindow& window = stage().window;
    const auto is = [](const std::optional<XInputEvent>& event, XInputEvent::Kind kind, unsigned code) {
        return event->kind == kind && event->code == code + xOffset;
    };
    std::vector<double> rounds;
    for (auto _ : state) {
        if (prepare) prepare();
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

// The whole road on Linux: the frame that lifts a bound three-finger tap goes through the
// recognizer, the engine and the runner, whose Ctrl+T leaves through XTest.
void BM_KeyDeliveryFromGestureFrame(benchmark::State& state) {
    auto made = XTestKeyOutput::create(stage().server.display());
    if (auto* problem = std::get_if<std::string>(&made)) {
        state.SkipWithError(problem->c_str());
        return;
    }
    const ScratchFolder folder{"ostrelle-bench"};
    BindingStore store(folder / "bindings.json", false);  // the first start's "3.tap" opens a tab
    ReplayTouchSource source;
    VirtualClockQueue queue;
    InMemorySettings settings;
    InertHotKeyRegistrar hotKeys;
    NoOpSystemPort silent;
    const LinuxActions actions(LinuxDesktop::gnome);
    LinuxSystemPort system({.keys = std::move(std::get<std::unique_ptr<XTestKeyOutput>>(made)),
                            .actions = actions,
                            .activeWindowClass = nullptr,
                            .openApplication = nullptr,
                            .feedback = silent.feedback()});
    ActionHost host;
    host.linuxActions = &actions;
    GestureEngine engine({.store = store,
                          .source = source,
                          .system = system,
                          .queue = queue,
                          .settings = settings,
                          .hotKeys = hotKeys,
                          .host = host});

    const std::array<Contact, 3> hand{{{1, 0.4, 0.5}, {2, 0.5, 0.5}, {3, 0.6, 0.5}}};
    double time = 0;
    measureKeyDelivery(
        state, [&] { source.deliverFrame({}, time + 0.1); }, [&] { time += 1.0; },
        [&] { source.deliverFrame(hand, time); });
}
BENCHMARK(BM_KeyDeliveryFromGestureFrame)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond)
    ->Iterations(500)
    ->Repetitions(5)
    ->ReportAggregatesOnly(true);

}  // namespace
}  // namespace ostrelle
