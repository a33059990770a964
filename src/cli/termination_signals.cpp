#include "cli/termination_signals.h"

#include <pthread.h>
#include <signal.h>

#include <array>
#include <cstdlib>
#include <thread>

#include "support/log.h"

namespace ostrelle::cli {
namespace {

constexpr std::array terminationSignals{SIGTERM, SIGINT};

[[noreturn]] void endOnSignal(sigset_t awaited) {
    int number = 0;
    while (::sigwait(&awaited, &number) != 0) {
    }
    Log::flush(Log::endingFlushLimit);
    // Nothing else here ever unblocks it, so once unblocked in this thread it ends the process
    // by its default action.
    struct sigaction byDefault {};
    byDefault.sa_handler = SIG_DFL;
    ::sigaction(number, &byDefault, nullptr);
    sigset_t only;
    sigemptyset(&only);
    sigaddset(&only, number);
    ::pthread_sigmask(SIG_UNBLOCK, &only, nullptr);
    ::raise(number);
    std::_Exit(128 + number);  // not reached
}

}  // namespace

void flushLogOnTerminationSignals() {
    sigset_t awaited;
    sigemptyset(&awaited);
    bool any = false;
    for (const int number : terminationSignals) {
        // Started in the background by a shell, a program is meant to ignore an interrupt.
        struct sigaction current {};
        if (::sigaction(number, nullptr, &current) == 0 && current.sa_handler == SIG_IGN) continue;
        sigaddset(&awaited, number);
        any = true;
    }
    if (!any) return;
    ::pthread_sigmask(SIG_BLOCK, &awaited, nullptr);
    std::thread(endOnSignal, awaited).detach();
}

}  // namespace ostrelle::cli
