#include "cli/cli_runner.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace ostrelle::testing {
namespace {

// The program sees the folders of `home` and, of this process's variables, only where programs
// are and the sanitizers' settings: nothing that leads to a user file.
std::vector<std::string> environmentFor(const ScratchHome& home) {
    std::vector<std::string> entries{"TMPDIR=" + home.temporaryFolder().string()};
    for (const auto& [variable, folder] : home.variables())
        entries.push_back(variable + "=" + folder.string());
    for (const char* name : {"PATH", "ASAN_OPTIONS", "UBSAN_OPTIONS", "LSAN_OPTIONS"}) {
        if (const char* value = std::getenv(name)) entries.push_back(std::string(name) + "=" + value);
    }
    return entries;
}

// What exec takes: the texts' own characters, then a null.
std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts) pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

// A started program and this process's ends of its standard input, output and error.
struct Started {
    pid_t pid;
    int input;
    int out;
    int err;
};

Started start(const std::vector<std::string>& arguments, std::vector<std::string> environment,
              const std::string& program = cliPath) {
    std::vector<std::string> argv{program};
    argv.insert(argv.end(), arguments.begin(), arguments.end());
    const std::vector<char*> argp = pointersTo(argv);
    const std::vector<char*> envp = pointersTo(environment);
    std::array<std::array<int, 2>, 3> pipes{};  // standard input, output, error: read end, write end
    for (auto& ends : pipes)
        if (::pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("cannot make pipes");
    const pid_t pid = ::fork();
    if (pid == 0) {
        // Only async-signal-safe calls until exec. It starts as from a terminal: no signal blocked,
        // and none ignored that the tests send or that this process ignores (a broken pipe).
        ::dup2(pipes[0][0], STDIN_FILENO);
        ::dup2(pipes[1][1], STDOUT_FILENO);
        ::dup2(pipes[2][1], STDERR_FILENO);
        sigset_t none;
        sigemptyset(&none);
        ::sigprocmask(SIG_SETMASK, &none, nullptr);
        for (const int number : {SIGPIPE, SIGINT, SIGTERM}) ::signal(number, SIG_DFL);
        ::execve(argp[0], argp.data(), envp.data());
        ::_exit(127);
    }
    for (const int childEnd : {pipes[0][0], pipes[1][1], pipes[2][1]}) ::close(childEnd);
    if (pid < 0) throw std::runtime_error("cannot start " + program);
    return {pid, pipes[0][1], pipes[1][0], pipes[2][0]};
}

// Reads the program's output until it closes it, sending `signal` once the output shows, and
// closing its input then (at once without a signal); then waits for its end.
CLIResult collect(Started child, const SignalAfter& signal) {
    bool signalled = signal.number == 0;
    if (signalled) ::close(std::exchange(child.input, -1));
    CLIResult result;
    std::array<pollfd, 2> outputs{{{child.out, POLLIN, 0}, {child.err, POLLIN, 0}}};  // closed: fd -1
    const auto deadline = std::chrono::steady_clock::now() + cliTimeLimit;
    while (outputs[0].fd >= 0 || outputs[1].fd >= 0) {
        if (!signalled && result.out.find(signal.output) != std::string::npos)
            signalled = ::kill(child.pid, signal.number) == 0;
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
        if (left.count() <= 0 ||
            (::poll(outputs.data(), outputs.size(), static_cast<int>(left.count())) < 0 && errno != EINTR)) {
            ADD_FAILURE() << "ostrelle-cli still running after " << cliTimeLimit.count() << " s; killed";
            ::kill(child.pid, SIGKILL);
            break;
        }
        for (std::size_t i = 0; i < outputs.size(); ++i) {
            if (outputs[i].fd < 0 || outputs[i].revents == 0) continue;
            std::array<char, 4096> buffer{};
            const ssize_t count = ::read(outputs[i].fd, buffer.data(), buffer.size());
            if (count > 0) {
                (i == 0 ? result.out : result.err).append(buffer.data(), static_cast<std::size_t>(count));
            } else if (count == 0 || errno != EINTR) {
                ::close(std::exchange(outputs[i].fd, -1));
            }
        }
    }
    for (const int fd : {outputs[0].fd, outputs[1].fd, child.input}) ::close(fd);  // -1 when already closed
    int wait = 0;
    ::waitpid(child.pid, &wait, 0);
    result.status = WIFEXITED(wait) ? WEXITSTATUS(wait) : -1;
    result.signal = WIFSIGNALED(wait) ? WTERMSIG(wait) : 0;
    return result;
}

}  // namespace

std::vector<std::string> CLIResult::outLines() const {
    std::vector<std::string> lines;
    std::istringstream stream(out);
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

CLIResult runCLI(const std::vector<std::string>& arguments, const std::string& input, const ScratchHome& home,
                 const SignalAfter& signal, const std::vector<std::string>& environment,
                 const std::string& program) {
    std::vector<std::string> variables = environmentFor(home);
    variables.insert(variables.end(), environment.begin(), environment.end());
    const Started child = start(arguments, variables, program);
    // A program that ended before reading fails the write, as this process ignores SIGPIPE.
    [[maybe_unused]] const ssize_t written = ::write(child.input, input.data(), input.size());
    return collect(child, signal);
}

BackgroundCLI::BackgroundCLI(const std::vector<std::string>& arguments, const ScratchHome& home,
                             const std::vector<std::string>& extraEnvironment, const std::string& program) {
    static int started = 0;
    const std::string notifyPath =
        (home.temporaryFolder() / ("notify-" + std::to_string(++started))).string();
    notify_ = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, notifyPath.c_str(), sizeof address.sun_path - 1);
    if (notify_ < 0 || ::bind(notify_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        throw std::runtime_error("cannot make the notify socket " + notifyPath);
    std::vector<std::string> environment = environmentFor(home);
    environment.push_back("NOTIFY_SOCKET=" + notifyPath);
    environment.insert(environment.end(), extraEnvironment.begin(), extraEnvironment.end());
    const Started child = start(arguments, environment, program);
    ::close(child.input);  // its input is at its end from the start
    pid_ = child.pid;
    out_ = child.out;
    err_ = child.err;
}

BackgroundCLI::~BackgroundCLI() {
    if (pid_ > 0) {
        ::kill(pid_, SIGKILL);
        ::waitpid(pid_, nullptr, 0);
    }
    for (const int fd : {notify_, out_, err_}) ::close(fd);  // -1 when never opened or already closed
}

bool BackgroundCLI::waitUntilReady() {
    pollfd wait{notify_, POLLIN, 0};
    std::array<char, 512> message{};
    return ::poll(&wait, 1, static_cast<int>(std::chrono::milliseconds(cliTimeLimit).count())) == 1 &&
           ::recv(notify_, message.data(), message.size() - 1, 0) > 0 &&
           std::string(message.data()).find("READY=1") != std::string::npos;
}

CLIResult BackgroundCLI::finish(int signal) {
    if (pid_ <= 0) return {};
    if (signal != 0) ::kill(pid_, signal);
    return collect({std::exchange(pid_, -1), -1, std::exchange(out_, -1), std::exchange(err_, -1)}, {});
}

}  // namespace ostrelle::testing
