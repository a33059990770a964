#include "support/log_writer.h"

#include <system_error>
#include <utility>

#include "support/contract.h"

namespace ostrelle {

LogWriter::LogWriter(std::filesystem::path file, std::shared_ptr<const LogClock> clock)
    : clock_(std::move(clock)), filePath_(file), writingTo_(std::move(file)), thread_([this] { run(); }) {
    if (!clock_) contractViolation("log writer made without a clock");
}

LogWriter::~LogWriter() {
    {
        std::lock_guard lock(mutex_);
        stopping_ = true;
    }
    wake_.notify_one();
    thread_.join();
}

void LogWriter::post(LogLevel level, std::string_view message) {
    Task task{Task::Kind::append, level, {}, std::string(message)};
    {
        std::lock_guard lock(mutex_);
        // Taken under the lock so that stamps never run backwards through the file.
        task.time = clock_->now();
        queued_.push_back(std::move(task));
        ++posted_;
    }
    wake_.notify_one();
}

void LogWriter::prune() {
    enqueue(Task{Task::Kind::prune, LogLevel::error, {}, {}});
}

void LogWriter::flush() {
    flushWithin(std::nullopt);
}

bool LogWriter::flush(std::chrono::milliseconds limit) {
    return flushWithin(limit);
}

bool LogWriter::flushWithin(std::optional<std::chrono::milliseconds> limit) {
    if (std::this_thread::get_id() == thread_.get_id())
        contractViolation("log flushed from its own writer thread");
    std::unique_lock lock(mutex_);
    const std::uint64_t target = posted_;
    const auto drained = [&] { return done_ >= target; };
    if (!limit) {
        drained_.wait(lock, drained);
        return true;
    }
    return drained_.wait_for(lock, *limit, drained);
}

void LogWriter::setFilePath(std::filesystem::path file) {
    Task task{Task::Kind::moveTo, LogLevel::error, {}, file.string()};
    {
        std::lock_guard lock(mutex_);
        filePath_ = std::move(file);
        queued_.push_back(std::move(task));
        ++posted_;
    }
    wake_.notify_one();
}

std::filesystem::path LogWriter::filePath() const {
    std::lock_guard lock(mutex_);
    return filePath_;
}

void LogWriter::setClock(std::shared_ptr<const LogClock> clock) {
    if (!clock) contractViolation("log given no clock");
    std::lock_guard lock(mutex_);
    clock_ = std::move(clock);
}

void LogWriter::enqueue(Task task) {
    {
        std::lock_guard lock(mutex_);
        queued_.push_back(std::move(task));
        ++posted_;
    }
    wake_.notify_one();
}

void LogWriter::run() {
    std::vector<Task> batch;
    std::unique_lock lock(mutex_);
    for (;;) {
        wake_.wait(lock, [&] { return stopping_ || !queued_.empty(); });
        if (queued_.empty()) return;  // stopping, and nothing left to write
        // Take the whole queue at once: callers wait for the lock only while two vectors swap.
        batch.swap(queued_);
        const std::shared_ptr<const LogClock> clock = clock_;
        lock.unlock();
        for (Task& task : batch) perform(task, *clock);
        const auto finished = batch.size();
        batch.clear();  // keeps its capacity for the next swap
        lock.lock();
        done_ += finished;
        drained_.notify_all();
    }
}

void LogWriter::perform(Task& task, const LogClock& clock) {
    // Logging must never stop the program, not even for an allocation failure.
    try {
        switch (task.kind) {
            case Task::Kind::append:
                append(task, clock);
                break;
            case Task::Kind::prune:
                rollOver(writingTo_, clock.now());
                break;
            case Task::Kind::moveTo:
                writingTo_ = std::move(task.text);
                break;
        }
    } catch (...) {
    }
}

void LogWriter::append(const Task& task, const LogClock& clock) {
    // Repeats are judged by text alone and only against the entry just before.
    if (lastMessage_ == task.text) return;
    lastMessage_ = task.text;
    std::error_code ignored;
    std::filesystem::create_directories(writingTo_.parent_path(), ignored);
    rollOver(writingTo_, clock.now());
    appendToFile(writingTo_, logLine(task.time, clock.utcOffset(task.time), task.level, task.text));
}

}  // namespace ostrelle
