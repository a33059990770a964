#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace ostrelle::testing {

// A fresh folder under the system's temporary directory, removed with everything in it.
class TempDir {
  public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::filesystem::path& path() const { return path_; }
    // Writes a file in the folder and returns its path.
    std::filesystem::path write(const std::string& name, const std::string& contents) const;

  private:
    std::filesystem::path path_;
};

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
