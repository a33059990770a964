#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "testing/scratch_home.h"

namespace ostrelle::testing {

// Writes a file into a test's folder and returns its path.
std::filesystem::path writeFile(const std::filesystem::path& folder, const std::string& name,
                                const std::string& contents);

struct CLIResult {
    int status = -1;  // exit status, or -1 when the program did not exit normally
    std::string out;
    std::string err;

    // Standard output split into lines, without their line ends.
    std::vector<std::string> outLines() const;
};

// Runs the built ostrelle-cli with these arguments and this standard input, capturing its output.
// Its HOME and XDG folders are those of `home`: by default the test binary's own, which must stay
// empty; a run that is meant to write there, as one that logs does, gets a ScratchHome of its own.
CLIResult runCLI(const std::vector<std::string>& arguments, const std::string& input = "",
                 const ScratchHome& home = guardedHome());

}  // namespace ostrelle::testing
