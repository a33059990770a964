#include <fmt/format.h>
#include <signal.h>
#include <systemd/sd-daemon.h>

#include <cmath>
#include <memory>
#include <optional>
#include <variant>

#include "actions/dry_run_system_port.h"
#include "cli/argument_parser.h"
#include "cli/commands.h"
#include "cli/engine_lines.h"
#include "cli/output.h"
#include "cli/service/recording_file.h"
#include "cli/store_session.h"
#include "engine/recording_playback.h"
#include "platform/linux/desktop_session.h"
#include "platform/linux/evdev_touch_source.h"
#include "platform/linux/instance_service.h"
#include "platform/linux/instance_socket.h"
#include "platform/linux/instance_watches.h"
#include "platform/linux/signal_watch.h"
#include "support/log.h"

namespace ostrelle::cli {
namespace {

constexpr std::string_view replayOption = "--replay";
constexpr std::string_view dryRunFlag = "--dry-run";
constexpr std::string_view bindingsOption = "--bindings";
constexpr double linesResolution = 0.001;  // seconds: the dry run's times, to the millisecond

// Where touches come from: the touchpad, or a recording played in real time.
struct TouchInput {
    std::unique_ptr<TouchSource> source;
    RecordingPlayback* playback = nullptr;  // the same object, when it is a recording
    std::function<int()> touchpadsOpen;     // when it is the touchpads
};

int serve(const ParsedArguments& parsed) {
    EpollMainQueue queue;
    // First, while this is the only thread: every thread started later leaves the signals to it.
    const SignalWatch signals(queue, {SIGTERM, SIGINT}, [&queue](int) { queue.quit(); });

    const EnvironmentLookup environment = processEnvironment();
    const auto folder = instanceFolder(environment);
    if (const auto* problem = std::get_if<std::string>(&folder)) {
        printError(*problem);
        return exitRefused;
    }
    // Filled in once the service exists; a request that comes before waits in the socket.
    std::function<std::string(const std::string&)> answer;
    auto taken = InstanceServer::takeOver(queue, std::get<std::filesystem::path>(folder),
                                          [&answer](const std::string& request) { return answer(request); });
    if (const auto* problem = std::get_if<std::string>(&taken)) {
        printError(*problem);
        return exitRefused;
    }
    const auto instance = std::move(std::get<std::unique_ptr<InstanceServer>>(taken));

    Log::prune();
    SettingsFile settings(defaultSettingsPath(environment));
    const auto bindingsPath =
        parsed.value(bindingsOption).value_or(defaultBindingsPath(environment, PathConvention::xdg).string());
    const auto store =
        openStore(bindingsPath, settings.boolValue(settings_keys::launchedBefore).value_or(false));

    TouchInput input;
    if (const auto file = parsed.value(replayOption)) {
        auto events = readRecording(*file);
        if (!events) return exitBadInput;
        auto playback = std::make_unique<RecordingPlayback>(queue, std::move(*events), [&queue] {
            // What the last gestures set off (a tap's wait, an action's steps) still happens.
            queue.quitWhenIdle();
        });
        input.playback = playback.get();
        input.source = std::move(playback);
    } else {
        auto touchpads = std::make_unique<EvdevTouchSource>(queue);
        input.touchpadsOpen = [source = touchpads.get()] { return source->openTouchpads(); };
        input.source = std::move(touchpads);
    }

    // Actions are the chords of the desktop this runs on; a dry run shows them instead of sending them.
    DesktopSession desktop(queue, environment, parsed.has(dryRunFlag));
    DryRunSystemPort& dryRun = desktop.dryRun();
    InstanceService service({.queue = queue,
                             .source = *input.source,
                             .system = desktop.system(),
                             .settings = settings,
                             .store = *store,
                             .hotKeys = desktop.hotKeys(),
                             .touchpadsOpen = input.touchpadsOpen,
                             .host = desktop.host(),
                             .quit = [&queue] { queue.quit(); }});
    answer = [&service](const std::string& request) { return service.answer(request); };
    std::optional<EngineLines> lines;
    if (parsed.has(dryRunFlag)) {
        lines.emplace(service.engine(), dryRun, [&queue, playback = input.playback] {
            const double time = playback ? playback->recordingTime() : queue.now();
            return std::round(time / linesResolution) * linesResolution;
        });
    }

    // The dry run's memory of effects would grow for as long as the service runs.
    dryRun.onRecord = [&dryRun, show = std::move(dryRun.onRecord)](const RecordedEvent& event) {
        if (show) show(event);
        dryRun.clearRecorded();
    };

    const InstanceWatches watches(queue, service, settings.path(), bindingsPath);

    // For a systemd unit of Type=notify, and for anyone who waits until the service can be asked.
    sd_notify(0, "READY=1");
    queue.run();
    Log::flush(Log::endingFlushLimit);
    return exitSuccess;
}

int runService(Arguments arguments) {
    const ParsedArguments parsed = parseArguments(
        arguments, {.positionals = {}, .flags = {dryRunFlag}, .valued = {replayOption, bindingsOption}});
    if (const auto status = finishEarly(runCommand(), parsed)) return *status;
    try {
        return serve(parsed);
    } catch (const std::system_error& error) {
        printError(fmt::format("cannot run the service: {}", error.what()));
        return exitRefused;
    }
}

}  // namespace

const Command& runCommand() {
    static const Command command{
        "run",
        "[--replay FILE] [--dry-run] [--bindings PATH]",
        "Runs Ostrelle in the background without a window: reads the touchpad and runs the bound actions "
        "until SIGTERM or SIGINT. A running instance is asked to quit first. --replay plays a recording "
        "in real time instead of the touchpad and ends when it has played out; --dry-run prints the "
        "gestures as JSON lines (as replay --bindings does) and, instead of sending them, the Linux key "
        "codes of their actions as {\"linuxKey\": CODE, \"down\": BOOL}.",
        runService,
    };
    return command;
}

}  // namespace ostrelle::cli
