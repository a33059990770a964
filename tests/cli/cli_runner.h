#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "testing/scratch_home.h"
#include "testing/temporary_folder.h"

namespace ostrelle::testing {

struct CLIResult {
    int status = -1;  // exit status, or -1 when the program did not exit normally
    int signal = 0;   // the signal that ended it, if one did
    std::string out;
    std::string err;

    std::vector<std::string> outLines() const;
};

// A signal to send once standard output holds `output`. Standard input stays open until then,
// so that a program that reads it waits.
struct SignalAfter {
    int number = 0;
    std::string output;
};

// Waited for at most, for a run that ends by itself or for the output awaited; only a hung
// program reaches it, and then the test fails and the program is killed.
constexpr std::chrono::seconds cliTimeLimit{30};
inline const std::string cliPath = OSTRELLE_CLI_PATH;

// Runs the built ostrelle-cli to its end with these arguments and this standard input (no more
// than a pipe holds). Its HOME and XDG folders are those of `home`: by default the test binary's
// own, which must stay empty; a run that is meant to log gets a ScratchHome of its own.
// `environment` adds variables ("NAME=value"), such as the desktop the program is to find.
CLIResult runCLI(const std::vector<std::string>& arguments, const std::string& input = "",
                 const ScratchHome& home = guardedHome(), const SignalAfter& signal = {},
                 const std::vector<std::string>& environment = {}, const std::string& program = cliPath);

// ostrelle-cli started in the background with the folders of `home`, its output read when it
// ends (no more than pipes hold). It tells when it is ready through NOTIFY_SOCKET, as it would tell systemd.
// A program still running when this goes away is killed.
class BackgroundCLI {
  public:
    // `environment` adds variables; `program` is another of the project's programs (the desktop
    // application) started the same way.
    BackgroundCLI(const std::vector<std::string>& arguments, const ScratchHome& home,
                  const std::vector<std::string>& environment = {}, const std::string& program = cliPath);
    ~BackgroundCLI();
    BackgroundCLI(const BackgroundCLI&) = delete;
    BackgroundCLI& operator=(const BackgroundCLI&) = delete;

    int pid() const { return pid_; }
    // Waits, at most cliTimeLimit, for its first notification: "READY=1"; false when it ended or
    // never said it.
    bool waitUntilReady();
    // Sends the signal (none: only waits) and waits, at most cliTimeLimit, for the end.
    CLIResult finish(int signal = 0);

  private:
    int pid_ = -1;
    int notify_ = -1;
    int out_ = -1;
    int err_ = -1;
};

}  // namespace ostrelle::testing
