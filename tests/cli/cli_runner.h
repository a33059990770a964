#pragma once

#include <sys/types.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "testing/scratch_home.h"

namespace ostrelle::testing {

// Writes a file into a test's folder and returns its path.
std::filesystem::path writeFile(const std::filesystem::path& folder, const std::string& name,
                                const std::string& contents);

struct CLIResult {
    int status = -1;  // exit status, or -1 when the program did not exit normally
    int signal = 0;   // the signal that ended it, if one did
    std::string out;
    std::string err;

    // Standard output split into lines, without their line ends.
    std::vector<std::string> outLines() const;
};

// The built ostrelle-cli, running, with pipes to its standard input, output and error, for tests
// that talk to it while it runs. Its HOME and XDG folders are those of `home`: by default the test
// binary's own, which must stay empty; a run that is meant to write there, as one that logs does,
// gets a ScratchHome of its own. Every wait is bounded; a process still running when this goes
// away is killed.
class CLIProcess {
  public:
    static constexpr std::chrono::seconds limit{30};  // per wait; only a hung program reaches it

    explicit CLIProcess(const std::vector<std::string>& arguments, const ScratchHome& home = guardedHome());
    ~CLIProcess();
    CLIProcess(const CLIProcess&) = delete;
    CLIProcess& operator=(const CLIProcess&) = delete;

    // Queues text for its standard input, written while this waits for anything.
    void write(std::string_view text) { pending_ += text; }
    // Its standard input ends once everything queued is written.
    void closeInput();
    // Waits until its standard output holds `text`; false when it ended or the limit passed first.
    bool waitForOutput(std::string_view text);
    void signal(int number) const;
    // Waits for it to end and returns all it printed. One still running at the limit is killed,
    // and the test fails.
    CLIResult wait();

  private:
    // Moves data through the pipes until `done` holds, both outputs have closed, or the limit passes.
    bool pump(const std::function<bool()>& done);
    void serve(int fd);

    pid_t pid_ = -1;
    int in_ = -1;
    int out_ = -1;
    int err_ = -1;
    std::string pending_;
    bool closeWhenWritten_ = false;
    CLIResult result_;
};

// Runs ostrelle-cli to its end with these arguments and this standard input, as above.
CLIResult runCLI(const std::vector<std::string>& arguments, const std::string& input = "",
                 const ScratchHome& home = guardedHome());

}  // namespace ostrelle::testing
