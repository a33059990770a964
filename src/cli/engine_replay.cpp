#include "cli/engine_replay.h"

#include <fmt/format.h>

#include <filesystem>
#include <variant>

#include "actions/dry_run_system_port.h"
#include "cli/commands.h"
#include "cli/engine_lines.h"
#include "cli/output.h"
#include "cli/recording_loop.h"
#include "engine/gesture_engine.h"
#include "engine/inert_hot_key_registrar.h"
#include "engine/replay_touch_source.h"
#include "recognition/recording.h"
#include "support/log.h"
#include "support/scratch_folder.h"
#include "support/virtual_clock_queue.h"

namespace ostrelle::cli {
namespace {

namespace fs = std::filesystem;
using Line = nlohmann::ordered_json;

// Points the recognizer's process-wide trace at this replay only while it runs.
class TraceLines {
  public:
    explicit TraceLines(const VirtualClockQueue& queue) {
        GestureRecognizer::trace = [&queue](const std::string& text) {
            Line line = Line::object();
            line["t"] = queue.now();
            line["trace"] = text;
            printLine(line);
        };
    }
    ~TraceLines() { GestureRecognizer::trace = nullptr; }
    TraceLines(const TraceLines&) = delete;
    TraceLines& operator=(const TraceLines&) = delete;
};

void applySetting(Settings& settings, const std::string& key, const std::string& value) {
    if (value == "true" || value == "false") {
        settings.setBool(key, value == "true");
    } else {
        settings.setData(key, value);
    }
}

}  // namespace

int replayThroughEngine(std::istream& input, const std::string& name, const EngineReplayOptions& options) {
    std::error_code failed;
    if (!fs::is_regular_file(options.bindingsFile, failed)) {
        printError(fmt::format("{}: no such bindings file", options.bindingsFile));
        return exitBadInput;
    }
    // The replay's own copy of the bindings, in a folder that goes away with it.
    ScratchFolder scratch("ostrelle-replay");
    const fs::path copy = scratch.path() / "bindings.json";
    if (scratch.path().empty() || !fs::copy_file(options.bindingsFile, copy, failed)) {
        printError(
            fmt::format("cannot copy {} to a temporary folder: {}", options.bindingsFile, failed.message()));
        return exitBadInput;
    }

    InMemorySettings settings;
    for (const auto& [key, value] : options.settings) applySetting(settings, key, value);
    BindingStore store(copy, settings.boolValue(settings_keys::launchedBefore).value_or(false));

    VirtualClockQueue queue;
    std::optional<TraceLines> trace;
    if (options.trace) trace.emplace(queue);
    DryRunSystemPort system;
    system.trusted = !options.untrusted;
    if (options.frontApp) system.setFrontmost(*options.frontApp);
    ReplayTouchSource source;
    InertHotKeyRegistrar hotKeys;

    GestureEngine engine({store, source, system, queue, settings, hotKeys});
    const EngineLines lines(engine, system, [&queue] { return queue.now(); });
    if (options.capture) engine.setCapturing(true);

    const int status =
        forEachRecordedEvent(input, name, options.deviceFile, [&](const RecordingEvent& event) {
            // Whatever falls due up to this line runs first, in order.
            queue.advanceTo(timeOf(event));
            if (const auto* frame = std::get_if<RecordedFrame>(&event)) {
                source.deliverFrame(frame->contacts, frame->time);
            } else {
                source.deliverClick(std::get<RecordedClick>(event).overOwnWindow);
            }
        });
    if (status != exitSuccess) return status;
    // A tap still waiting for its double tap, and the last steps of an action, still happen.
    queue.runAll();
    return exitSuccess;
}

}  // namespace ostrelle::cli
