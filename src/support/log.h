#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string_view>

#include "support/log_clock.h"
#include "support/log_file.h"
#include "support/log_pipeline.h"

namespace ostrelle {

// The program's diagnostic log: problems the user cannot see otherwise, one line each, in a
// plain-text file with one older generation rolled by size and by age. Static members only;
// there is no instance. Every member may be called from any thread and returns at once,
// except `flush`. File work happens on the log's own writer thread and never fails loudly.
class Log {
  public:
    static constexpr std::uintmax_t maxFileSize =
        0x80000;                                 // bytes (512 KiB); exactly this much does not roll
    static constexpr double maxAge = 2592000.0;  // seconds (30 days), for both generations

    static void error(std::string_view message);
    static void warning(std::string_view message);

    // How long a program that is ending waits for the file to take what is still queued: ample for
    // any backlog, yet a hung file system cannot keep the program alive.
    static constexpr std::chrono::milliseconds endingFlushLimit{3000};

    // Queues a roll-over check; the application calls it once at start-up.
    static void prune();
    // Waits until every entry queued so far is in the file. Not from the writer thread. A normal
    // exit (a return from main, std::exit) does this by itself, for at most `endingFlushLimit`.
    static void flush();
    // The same, giving up after `limit`; true when everything was written in time.
    static bool flush(std::chrono::milliseconds limit);

    // The current log file; by default the platform's place for it.
    static std::filesystem::path fileURL();
    static void setFileURL(std::filesystem::path file);
    // Where dates and the time zone come from; the wall clock unless replaced.
    static void setClock(std::shared_ptr<const LogClock> clock);

    // Other parts may write their own entries here; it emits nothing (see `LogPipeline`).
    static const LogPipeline& pipeline();

    // Sees every entry as it is logged, on the caller's thread, once it is queued for the file
    // (so a flush after the listener saw it writes it): for tools that show the log live (a
    // replay prints it) and for tests. One listener; empty removes it.
    using Level = LogLevel;
    using Listener = std::function<void(Level, std::string_view)>;
    static void setListener(Listener listener);
};

}  // namespace ostrelle
