#include "platform/xvfb_server.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <stdexcept>

namespace ostrelle::testing {

XvfbServer::XvfbServer() {
    std::array<int, 2> pipeEnds{};
    if (pipe2(pipeEnds.data(), O_CLOEXEC) != 0) throw std::runtime_error("cannot make a pipe for Xvfb");
    pid_ = fork();
    if (pid_ == 0) {
        // The server writes its display number to this descriptor once it takes connections.
        dup2(pipeEnds[1], 3);
        execlp("Xvfb", "Xvfb", "-displayfd", "3", "-nolisten", "tcp", "-screen", "0", "1024x768x24",
               "-noreset", static_cast<char*>(nullptr));
        _exit(127);
    }
    close(pipeEnds[1]);
    if (pid_ < 0) {
        close(pipeEnds[0]);
        throw std::runtime_error("cannot start Xvfb");
    }
    std::string number;
    pollfd readable{pipeEnds[0], POLLIN, 0};
    const auto deadline = std::chrono::steady_clock::now() + startLimit;
    while (number.empty() || number.back() != '\n') {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
            deadline - std::chrono::steady_clock::now());
        if (left.count() <= 0 || poll(&readable, 1, static_cast<int>(left.count())) <= 0) break;
        std::array<char, 16> chunk{};
        const ssize_t got = read(pipeEnds[0], chunk.data(), chunk.size());
        if (got <= 0) break;
        number.append(chunk.data(), static_cast<std::size_t>(got));
    }
    close(pipeEnds[0]);
    if (number.empty() || number.back() != '\n') {
        kill(pid_, SIGKILL);
        waitpid(pid_, nullptr, 0);
        throw std::runtime_error("Xvfb did not come up (is the xvfb package installed?)");
    }
    number.pop_back();
    display_ = ":" + number;
}

XvfbServer::~XvfbServer() {
    kill(pid_, SIGTERM);
    waitpid(pid_, nullptr, 0);
}

}  // namespace ostrelle::testing
