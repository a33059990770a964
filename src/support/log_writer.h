#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "support/log_clock.h"
#include "support/log_file.h"

namespace ostrelle {

// The engine behind `Log`: a queue of entries and one writer thread that does all file work, so
// that a caller on any thread pays only for taking the time and a short locked append. Entries
// are written in the order of the calls. `Log` keeps one for the process; tests make their own.
class LogWriter {
  public:
    LogWriter(std::filesystem::path file, std::shared_ptr<const LogClock> clock);
    // Writes everything still queued, then stops the writer thread.
    ~LogWriter();

    LogWriter(const LogWriter&) = delete;
    LogWriter& operator=(const LogWriter&) = delete;

    // The stamp is the time of this call, not of the write.
    void post(LogLevel level, std::string_view message);
    void error(std::string_view message) { post(LogLevel::error, message); }
    void warning(std::string_view message) { post(LogLevel::warning, message); }

    // Queues a roll-over check, as the application does once at start-up.
    void prune();

    // Blocks until everything queued before the call has been written. Never call it from the
    // writer thread itself: it would wait for itself.
    void flush();
    // The same, giving up after `limit`; true when everything was written in time.
    bool flush(std::chrono::milliseconds limit);

    // Entries queued after this call go to the new file; those before it, to the old one.
    void setFilePath(std::filesystem::path file);
    std::filesystem::path filePath() const;

    void setClock(std::shared_ptr<const LogClock> clock);

  private:
    // Waits for what is queued now, for ever or at most `limit`; true when it was all written.
    bool flushWithin(std::optional<std::chrono::milliseconds> limit);
    struct Task {
        enum class Kind { append, prune, moveTo };
        Kind kind = Kind::append;
        LogLevel level = LogLevel::error;
        SystemTime time;
        std::string text;  // the message, or the new path for moveTo
    };

    void enqueue(Task task);
    void run();
    void perform(Task& task, const LogClock& clock);
    void append(const Task& task, const LogClock& clock);

    mutable std::mutex mutex_;
    std::condition_variable wake_;     // the writer: work arrived, or stop
    std::condition_variable drained_;  // flushers: a batch is done
    std::vector<Task> queued_;
    std::uint64_t posted_ = 0;
    std::uint64_t done_ = 0;
    bool stopping_ = false;
    std::shared_ptr<const LogClock> clock_;
    std::filesystem::path filePath_;

    // Only the writer thread touches these.
    std::filesystem::path writingTo_;
    std::optional<std::string> lastMessage_;

    std::thread thread_;  // last, so that everything above exists before it starts
};

}  // namespace ostrelle
