#include "cli/engine_replay.h"

#include <fmt/format.h>

#include <filesystem>
#include <variant>

#include "actions/dry_run_system_port.h"
#include "actions/recorded_event.h"
#include "cli/commands.h"
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

// Points the process-wide sinks (recognizer trace, log) at this replay only while it runs.
class ReplaySinks {
  public:
    ReplaySinks(const VirtualClockQueue& queue, bool trace) {
        if (trace) {
            GestureRecognizer::trace = [&queue](const std::string& text) {
                Line line = Line::object();
                line["t"] = queue.now();
                line["trace"] = text;
                printLine(line);
            };
        }
        Log::setListener([&queue](Log::Level level, std::string_view message) {
            Line line = Line::object();
            line["t"] = queue.now();
            line["log"] = level == Log::Level::error ? "ERROR" : "WARN";
            line["message"] = std::string(message);
            printLine(line);
        });
    }
    ~ReplaySinks() {
        GestureRecognizer::trace = nullptr;
        Log::setListener(nullptr);
    }
    ReplaySinks(const ReplaySinks&) = delete;
    ReplaySinks& operator=(const ReplaySinks&) = delete;
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
    ReplaySinks sinks(queue, options.trace);
    DryRunSystemPort system;
    system.trusted = !options.untrusted;
    if (options.frontApp) system.setFrontmost(*options.frontApp);
    system.onRecord = [&queue](const RecordedEvent& event) {
        Line line = Line::object();
        line["t"] = queue.now();
        line["event"] = toJSON(event);
        printLine(line);
    };
    ReplayTouchSource source;
    InertHotKeyRegistrar hotKeys;

    GestureEngine engine({store, source, system, queue, settings, hotKeys});
    engine.hooks.recognized = [&queue](const Gesture& gesture) {
        Line line = Line::object();
        line["t"] = queue.now();
        line["gesture"] = gesture.id;
        printLine(line);
    };
    engine.hooks.run = [&queue](const ActionRef& action) {
        Line line = Line::object();
        line["t"] = queue.now();
        line["run"] = action.appID + "/" + action.optionID;
        printLine(line);
    };
    std::optional<std::string> shownDetection;
    engine.observers.add([&] {
        const auto& detection = engine.lastDetection();
        if (!detection || detection->id == shownDetection) return;
        shownDetection = detection->id;
        Line line = Line::object();
        line["t"] = queue.now();
        line["detection"] = detection->gesture.id;
        printLine(line);
    });
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
