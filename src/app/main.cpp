#include <signal.h>
#include <systemd/sd-daemon.h>

#include <QApplication>
#include <QTimer>
#include <fstream>
#include <iostream>
#include <nlohmann/json.hpp>

#include "app/command_line.h"
#include "platform/linux/signal_watch.h"
#include "support/log.h"

namespace {

using namespace ostrelle;
using namespace ostrelle::app;

constexpr int exitSuccess = 0;
constexpr int exitFailure = 1;
constexpr int exitUsage = 2;
constexpr const char* notRunning = "ostrelle: Ostrelle is not running";

std::optional<std::vector<RecordingEvent>> readRecording(const std::string& file) {
    std::ifstream input(file);
    if (!input) {
        std::cerr << "ostrelle: cannot read " << file << "\n";
        return std::nullopt;
    }
    std::vector<RecordingEvent> events;
    RecordingReader reader(input);
    try {
        while (auto event = reader.next()) events.push_back(std::move(*event));
    } catch (const std::exception& error) {
        std::cerr << "ostrelle: " << file << ": " << error.what() << "\n";
        return std::nullopt;
    }
    return events;
}

// The running instance's answer to a request; nothing when none runs.
std::optional<nlohmann::json> ask(const EnvironmentLookup& environment, std::string_view request) {
    const auto folder = instanceFolder(environment);
    if (!std::holds_alternative<std::filesystem::path>(folder)) return std::nullopt;
    const auto reply = askInstance(std::get<std::filesystem::path>(folder), request);
    if (!reply) return std::nullopt;
    return nlohmann::json::parse(*reply, nullptr, false);
}

int run(int argc, char** argv, Invocation invocation, const EnvironmentLookup& environment) {
    EpollMainQueue queue;
    // Before Qt starts any thread: every later thread leaves these signals to the queue.
    const SignalWatch stopSignals(queue, {SIGTERM, SIGINT}, [](int) { QCoreApplication::quit(); });
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Ostrelle"));
    QApplication::setApplicationVersion(QStringLiteral(OSTRELLE_VERSION));
    QApplication::setDesktopFileName(QStringLiteral("ostrelle"));
    // It lives in the tray: closing the window does not end it.
    QApplication::setQuitOnLastWindowClosed(false);
    auto started = OstrelleApp::start(queue, environment, std::move(invocation.options));
    if (const auto* problem = std::get_if<std::string>(&started)) {
        std::cerr << "ostrelle: " << *problem << "\n";
        return exitFailure;
    }
    // Once the loop runs the tray icon is up: for a systemd unit of Type=notify, and for anyone
    // who waits until this instance can be asked.
    QTimer::singleShot(0, [] { sd_notify(0, "READY=1"); });
    const int status = QApplication::exec();
    std::get<std::unique_ptr<OstrelleApp>>(started).reset();
    Log::flush(Log::endingFlushLimit);
    return status;
}

}  // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    auto parsed = parseInvocation(arguments);
    if (const auto* problem = std::get_if<std::string>(&parsed)) {
        std::cerr << "ostrelle: " << *problem << "\n" << usage;
        return exitUsage;
    }
    Invocation invocation = std::move(std::get<Invocation>(parsed));
    const EnvironmentLookup environment = processEnvironment();
    switch (invocation.request) {
        case Invocation::Request::help:
            std::cout << usage;
            return exitSuccess;
        case Invocation::Request::version:
            std::cout << "ostrelle " << OSTRELLE_VERSION << "\n";
            return exitSuccess;
        case Invocation::Request::toggle: {
            const auto reply = ask(environment, "toggle");
            if (!reply) {
                std::cerr << notRunning << "\n";
                return exitFailure;
            }
            std::cout << reply->dump() << "\n";
            return exitSuccess;
        }
        case Invocation::Request::open: {
            // The headless service has no window: then this one takes over, window open.
            const auto reply = ask(environment, "open");
            if (reply && reply->value("opened", false)) return exitSuccess;
            break;
        }
        case Invocation::Request::run:
            break;
    }
    if (invocation.replayFile) {
        invocation.options.replay = readRecording(*invocation.replayFile);
        if (!invocation.options.replay) return exitUsage;
    }
    return run(argc, argv, std::move(invocation), environment);
}
