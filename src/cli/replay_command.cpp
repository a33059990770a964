#include <fmt/format.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <optional>
#include <stdexcept>
#include <string>
#include <variant>

#include "cli/commands.h"
#include "cli/custom_gestures_file.h"
#include "cli/engine_replay.h"
#include "cli/output.h"
#include "cli/recording_loop.h"
#include "gestures/gesture_json.h"
#include "recognition/gesture_recognizer.h"
#include "recognition/recording.h"

namespace ostrelle::cli {
namespace {

constexpr std::string_view standardInput = "-";
constexpr std::string_view standardInputName = "<stdin>";

struct ReplayOptions {
    std::optional<std::string> file;
    std::optional<std::string> customFile;
    std::optional<std::string> deviceFile;  // describes an evdev recording's device
    bool trace = false;
    bool recordingShapes = false;
    // With a bindings file the replay runs through the whole engine.
    std::optional<std::string> bindingsFile;
    EngineReplayOptions engine;
    bool engineOnlyOption = false;  // an option that needs --bindings was given
};

// What the arguments ask for: a replay with these options, the usage text, or neither (a problem).
struct ParsedOptions {
    ReplayOptions options;
    std::optional<std::string> problem;
    bool help = false;
};

ParsedOptions parseOptions(Arguments arguments) {
    ParsedOptions parsed;
    ReplayOptions& options = parsed.options;
    for (std::size_t i = 0; i < arguments.size() && !parsed.problem; ++i) {
        const std::string& argument = arguments[i];
        if (isHelpOption(argument)) {
            parsed.help = true;
            return parsed;
        } else if (argument == "--trace") {
            options.trace = true;
        } else if (argument == "--recording-shapes") {
            options.recordingShapes = true;
        } else if (argument == "--bindings") {
            if (i + 1 == arguments.size()) {
                parsed.problem = "--bindings needs a file";
            } else if (options.bindingsFile) {
                parsed.problem = "--bindings given twice";
            } else {
                options.bindingsFile = arguments[++i];
            }
        } else if (argument == "--capture" || argument == "--untrusted") {
            (argument == "--capture" ? options.engine.capture : options.engine.untrusted) = true;
            options.engineOnlyOption = true;
        } else if (argument == "--front-app") {
            if (i + 1 == arguments.size()) {
                parsed.problem = "--front-app needs a bundle id";
            } else {
                options.engine.frontApp = arguments[++i];
                options.engineOnlyOption = true;
            }
        } else if (argument == "--settings") {
            // One or more KEY=VALUE pairs follow.
            const std::size_t first = i + 1;
            while (i + 1 < arguments.size() && !arguments[i + 1].starts_with("-") &&
                   arguments[i + 1].find('=') != std::string::npos) {
                const std::string& pair = arguments[++i];
                const std::size_t equals = pair.find('=');
                if (equals == 0) {
                    parsed.problem = fmt::format("--settings: \"{}\" has no key", pair);
                    break;
                }
                options.engine.settings.emplace_back(pair.substr(0, equals), pair.substr(equals + 1));
            }
            if (i + 1 == first && !parsed.problem) parsed.problem = "--settings needs KEY=VALUE";
            options.engineOnlyOption = true;
        } else if (argument == "--device") {
            if (i + 1 == arguments.size()) {
                parsed.problem = "--device needs an evemu description file";
            } else if (options.deviceFile) {
                parsed.problem = "--device given twice";
            } else {
                options.deviceFile = arguments[++i];
            }
        } else if (argument == "--custom") {
            if (i + 1 == arguments.size()) {
                parsed.problem = "--custom needs a file";
            } else if (options.customFile) {
                parsed.problem = "--custom given twice";
            } else {
                options.customFile = arguments[++i];
            }
        } else if (argument.starts_with("-") && argument != standardInput) {
            parsed.problem = fmt::format("unknown option {}", argument);
        } else if (options.file) {
            parsed.problem = fmt::format("unexpected argument \"{}\"", argument);
        } else {
            options.file = argument;
        }
    }
    if (!parsed.problem && !options.file) parsed.problem = "no recording given";
    if (!parsed.problem && options.engineOnlyOption && !options.bindingsFile) {
        parsed.problem = "--capture, --untrusted, --front-app and --settings need --bindings";
    }
    if (!parsed.problem && options.bindingsFile && (options.customFile || options.recordingShapes)) {
        // The engine takes its shapes from the bindings and records shapes only in capture mode.
        parsed.problem = "--custom and --recording-shapes cannot be used with --bindings";
    }
    if (options.bindingsFile) {
        options.engine.bindingsFile = *options.bindingsFile;
        options.engine.deviceFile = options.deviceFile;
        options.engine.trace = options.trace;
    }
    return parsed;
}

// The recognizer's trace hook is process-wide; it points at this replay only while it runs.
class TraceToOutput {
  public:
    explicit TraceToOutput(const double& now) {
        GestureRecognizer::trace = [&now](const std::string& text) {
            nlohmann::ordered_json line = nlohmann::ordered_json::object();
            line["t"] = now;
            line["trace"] = text;
            printLine(line);
        };
    }
    ~TraceToOutput() { GestureRecognizer::trace = nullptr; }
    TraceToOutput(const TraceToOutput&) = delete;
    TraceToOutput& operator=(const TraceToOutput&) = delete;
};

void printGesture(double time, const Gesture& gesture) {
    nlohmann::ordered_json line = nlohmann::ordered_json::object();
    line["t"] = time;
    line["gesture"] = gesture.id;
    if (gesture.custom) line["custom"] = encodeShape<nlohmann::ordered_json>(*gesture.custom);
    printLine(line);
}

std::optional<Gesture> feed(GestureRecognizer& recognizer, const RecordingEvent& event) {
    if (const auto* frame = std::get_if<RecordedFrame>(&event)) {
        return recognizer.process(frame->contacts, frame->time);
    }
    // Whether the pointer was over our own window is the engine's business, not the recognizer's.
    return recognizer.physicalClick();
}

int replay(std::istream& input, const std::string& name, const ReplayOptions& options,
           std::vector<Gesture> customs) {
    if (options.bindingsFile) return replayThroughEngine(input, name, options.engine);
    GestureRecognizer recognizer;
    recognizer.customs = std::move(customs);
    recognizer.recordingShapes = options.recordingShapes;

    double now = 0;
    std::optional<TraceToOutput> trace;
    if (options.trace) trace.emplace(now);

    return forEachRecordedEvent(input, name, options.deviceFile, [&](const RecordingEvent& event) {
        now = timeOf(event);
        if (const auto gesture = feed(recognizer, event)) printGesture(now, *gesture);
    });
}

int runReplay(Arguments arguments) {
    const ParsedOptions parsed = parseOptions(arguments);
    if (parsed.help) {
        printCommandUsage(replayCommand());
        return exitSuccess;
    }
    if (parsed.problem) return usageError(replayCommand(), *parsed.problem);
    const ReplayOptions& options = parsed.options;

    std::vector<Gesture> customs;
    if (options.customFile) {
        try {
            customs = loadCustomGestures(*options.customFile);
        } catch (const std::runtime_error& error) {
            printError(error.what());
            return exitBadInput;
        }
    }

    if (*options.file == standardInput)
        return replay(std::cin, std::string(standardInputName), options, std::move(customs));

    std::optional<std::ifstream> input = openRecordingFile(*options.file);
    if (!input) return exitBadInput;
    return replay(*input, *options.file, options, std::move(customs));
}

}  // namespace

const Command& replayCommand() {
    static const Command command{
        "replay",
        "FILE [--device DESC] [--trace] [--custom SHAPES.json] [--recording-shapes]\n"
        "       FILE [--device DESC] --bindings PATH [--trace] [--capture] [--untrusted] "
        "[--front-app BUNDLE_ID] [--settings KEY=VALUE ...]",
        "Replays a recording (FILE, or - for standard input) through the gesture recognizer and prints "
        "what fires, one JSON object per line. FILE is a replay file of JSON lines, or a touchpad's raw "
        "events as evemu, evtest or libinput record wrote them (told from the content); a recording "
        "without its device's description takes it from --device DESC, an evemu description file. "
        "With --bindings the recording runs through the whole engine on a copy of the bindings file, "
        "and the actions go to a dry-run system that prints what it would post.",
        runReplay,
    };
    return command;
}

}  // namespace ostrelle::cli
