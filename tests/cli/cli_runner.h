#pragma once

#include <filesystem>
#include <string>
#include <vector>

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
CLIResult runCLI(const std::vector<std::string>& arguments, const std::string& input = "");

}  // namespace ostrelle::testing
