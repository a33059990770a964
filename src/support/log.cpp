#include "support/log.h"

#include "support/default_paths.h"
#include "support/log_writer.h"

namespace ostrelle {
namespace {

// Made on first use and deliberately never destroyed: entries may still arrive from other
// threads and from static destructors while the process winds down.
LogWriter& writer() {
    static LogWriter* const shared =
        new LogWriter(defaultLogPath(processEnvironment()), std::make_shared<SystemLogClock>());
    return *shared;
}

}  // namespace

void Log::error(std::string_view message) {
    pipeline().write(LogPipeline::Type::error, message);
    writer().error(message);
}

void Log::warning(std::string_view message) {
    // Warnings go to the system log at the error type too.
    pipeline().write(LogPipeline::Type::error, message);
    writer().warning(message);
}

void Log::prune() {
    writer().prune();
}

void Log::flush() {
    writer().flush();
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
