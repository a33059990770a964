#include "cli/cli_runner.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string_view>

extern char** environ;

namespace ostrelle::testing {
namespace {

// The few variables of this process that lead to no user file: where programs are, the language
// and time zone of texts, and the sanitizers' settings.
bool passedOn(std::string_view entry) {
    constexpr std::array exact{"PATH", "TZ", "LANG", "LANGUAGE"};
    const std::string_view name = entry.substr(0, entry.find('='));
    return std::find(exact.begin(), exact.end(), name) != exact.end() || name.starts_with("LC_") ||
           name.ends_with("SAN_OPTIONS");
}

// A program started by a test sees these variables and the folders of `home`, never the
// test process's own environment.
std::vector<std::string> environmentFor(const ScratchHome& home) {
    std::vector<std::string> entries;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        if (passedOn(*entry)) entries.emplace_back(*entry);
    }
    for (const auto& [variable, folder] : home.variables())
        entries.push_back(variable + "=" + folder.string());
    entries.push_back("TMPDIR=" + home.temporaryFolder().string());
    return entries;
}

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts) pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

}  // namespace

std::filesystem::path writeFile(const std::filesystem::path& folder, const std::string& name,
                                const std::string& contents) {
    const std::filesystem::path file = folder / name;
    std::ofstream(file, std::ios::binary) << contents;
    return file;
}

std::vector<std::string> CLIResult::outLines() const {
    std::vector<std::string> lines;
    std::istringstream stream(out);
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

CLIProcess::CLIProcess(const std::vector<std::string>& arguments, const ScratchHome& home) {
    std::array<int, 2> input{};
    std::array<int, 2> output{};
    std::array<int, 2> error{};
    if (::pipe2(input.data(), O_CLOEXEC) != 0 || ::pipe2(output.data(), O_CLOEXEC) != 0 ||
        ::pipe2(error.data(), O_CLOEXEC) != 0)
        throw std::runtime_error("cannot make pipes");
    in_ = input[1];
    out_ = output[0];
    err_ = error[0];
    ::fcntl(in_, F_SETFL, O_NONBLOCK);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input[0], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, error[1], STDERR_FILENO);
    // It starts as from a terminal: no signal blocked, and none ignored that the test sends or
    // that this process ignores (a broken pipe).
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t none;
    sigset_t reset;
    sigemptyset(&none);
    sigemptyset(&reset);
    for (const int number : {SIGPIPE, SIGINT, SIGTERM}) sigaddset(&reset, number);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setsigdefault(&attributes, &reset);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);

    std::string program = OSTRELLE_CLI_PATH;
    std::vector<std::string> owned{program};
    owned.insert(owned.end(), arguments.begin(), arguments.end());
    const std::vector<char*> argv = pointersTo(owned);
    std::vector<std::string> environment = environmentFor(home);
    const std::vector<char*> envp = pointersTo(environment);
    const int spawned = posix_spawn(&pid_, program.c_str(), &actions, &attributes, argv.data(), envp.data());
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attributes);
    for (const int childEnd : {input[0], output[1], error[1]}) ::close(childEnd);
    if (spawned != 0) {
        for (const int ours : {in_, out_, err_}) ::close(ours);
        throw std::runtime_error("cannot start " + program);
    }
}

CLIProcess::~CLIProcess() {
    if (pid_ > 0) {
        ::kill(pid_, SIGKILL);
        ::waitpid(pid_, nullptr, 0);
    }
    for (const int fd : {in_, out_, err_}) {
        if (fd >= 0) ::close(fd);
    }
}

void CLIProcess::closeInput() {
    closeWhenWritten_ = true;
    if (pending_.empty() && in_ >= 0) {
        ::close(in_);
        in_ = -1;
    }
}

bool CLIProcess::waitForOutput(std::string_view text) {
    return pump([&] { return result_.out.find(text) != std::string::npos; });
}

void CLIProcess::signal(int number) const {
    if (pid_ > 0) ::kill(pid_, number);
}

CLIResult CLIProcess::wait() {
    if (!pump([this] { return out_ < 0 && err_ < 0; })) {
        ADD_FAILURE() << "ostrelle-cli still running after " << limit.count() << " s; killed";
        ::kill(pid_, SIGKILL);
    }
    // Both outputs have closed, so it is ending.
    int wait = 0;
    ::waitpid(pid_, &wait, 0);
    pid_ = -1;
    result_.status = WIFEXITED(wait) ? WEXITSTATUS(wait) : -1;
    result_.signal = WIFSIGNALED(wait) ? WTERMSIG(wait) : 0;
    return result_;
}

bool CLIProcess::pump(const std::function<bool()>& done) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (!done()) {
        std::vector<pollfd> watched;
        for (const int fd : {out_, err_}) {
            if (fd >= 0) watched.push_back({fd, POLLIN, 0});
        }
        if (watched.empty()) return done();  // it ended
        if (in_ >= 0 && !pending_.empty()) watched.push_back({in_, POLLOUT, 0});
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
            deadline - std::chrono::steady_clock::now());
        if (left.count() <= 0) return false;
        if (::poll(watched.data(), watched.size(), static_cast<int>(left.count())) < 0 && errno != EINTR)
            return false;
        for (const pollfd& entry : watched) {
            if (entry.revents != 0) serve(entry.fd);
        }
    }
    return true;
}

void CLIProcess::serve(int fd) {
    if (fd == in_) {
        const ssize_t written = ::write(in_, pending_.data(), pending_.size());
        if (written > 0) pending_.erase(0, static_cast<std::size_t>(written));
        // A program that stopped reading gets nothing more.
        if (written < 0 && errno != EAGAIN && errno != EINTR) pending_.clear();
        if (pending_.empty() && closeWhenWritten_) closeInput();
        return;
    }
    std::array<char, 4096> buffer{};
    const ssize_t count = ::read(fd, buffer.data(), buffer.size());
    if (count < 0 && errno == EINTR) return;
    if (count <= 0) {
        ::close(fd);
        (fd == out_ ? out_ : err_) = -1;
        return;
    }
    (fd == out_ ? result_.out : result_.err).append(buffer.data(), static_cast<std::size_t>(count));
}

CLIResult runCLI(const std::vector<std::string>& arguments, const std::string& input,
                 const ScratchHome& home) {
    CLIProcess cli(arguments, home);
    cli.write(input);
    cli.closeInput();
    return cli.wait();
}

}  // namespace ostrelle::testing
