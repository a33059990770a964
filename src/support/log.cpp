#include "support/log.h"

#include <cstdlib>
#include <mutex>

#include "support/default_paths.h"
#include "support/log_writer.h"

namespace ostrelle {
namespace {

LogWriter& writer();

// The last lines of a short-lived program would otherwise die with it, queued but unwritten.
void flushAtExit() {
    writer().flush(Log::endingFlushLimit);
}

// Made on first use and deliberately never destroyed: entries may still arrive from other
// threads and from static destructors while the process winds down. It is drained instead.
LogWriter& writer() {
    static LogWriter* const shared = [] {
        auto* made = new LogWriter(defaultLogPath(processEnvironment()), std::make_shared<SystemLogClock>());
        std::atexit(flushAtExit);
        return made;
    }();
    return *shared;
}

struct ListenerSlot {
    std::mutex mutex;
    std::shared_ptr<const Log::Listener> listener;
};

ListenerSlot& listenerSlot() {
    static ListenerSlot* const slot = new ListenerSlot;
    return *slot;
}

void tellListener(Log::Level level, std::string_view message) {
    std::shared_ptr<const Log::Listener> listener;
    {
        ListenerSlot& slot = listenerSlot();
        std::lock_guard lock(slot.mutex);
        listener = slot.listener;
    }
    if (listener) (*listener)(level, message);
}

}  // namespace

void Log::error(std::string_view message) {
    pipeline().write(LogPipeline::Type::error, message);
    writer().error(message);
    tellListener(Level::error, message);
}

void Log::warning(std::string_view message) {
    // Warnings go to the system log at the error type too.
    pipeline().write(LogPipeline::Type::error, message);
    writer().warning(message);
    tellListener(Level::warning, message);
}

void Log::setListener(Listener listener) {
    ListenerSlot& slot = listenerSlot();
    std::lock_guard lock(slot.mutex);
    slot.listener = listener ? std::make_shared<const Listener>(std::move(listener)) : nullptr;
}

void Log::prune() {
    writer().prune();
}

void Log::flush() {
    writer().flush();
}

bool Log::flush(std::chrono::milliseconds limit) {
    return writer().flush(limit);
}

std::filesystem::path Log::fileURL() {
    return writer().filePath();
}

void Log::setFileURL(std::filesystem::path file) {
    writer().setFilePath(std::move(file));
}

void Log::setClock(std::shared_ptr<const LogClock> clock) {
    writer().setClock(std::move(clock));
}

const LogPipeline& Log::pipeline() {
    static const LogPipeline disabled;
    return disabled;
}

}  // namespace ostrelle
