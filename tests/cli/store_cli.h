#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "cli/cli_runner.h"
#include "store/bindings_file.h"
#include "testing/temporary_folder.h"

namespace ostrelle::testing {

// A bindings file in a fresh temporary folder, and the command line pointed at it. Every
// command gets --file, so no test ever opens the user's own bindings.
class StoreCLI {
  public:
    StoreCLI() : file_(folder_ / "bindings.json") {}

    const std::filesystem::path& folder() const { return folder_.path(); }
    const std::filesystem::path& file() const { return file_; }

    CLIResult run(std::vector<std::string> arguments) const {
        arguments.push_back("--file");
        arguments.push_back(file_.string());
        return runCLI(arguments);
    }

    void write(const std::vector<GestureBinding>& bindings) const { writeText(file_, encodeBindingsFile(bindings)); }
    std::vector<GestureBinding> stored() const { return decodeBindingsFile(readText(file_)); }

    // Names in the folder other than the bindings file itself: backups and set-aside files.
    std::vector<std::string> sideFiles() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder_.path())) {
            if (entry.path() != file_) names.push_back(entry.path().filename().string());
        }
        return names;
    }

  private:
    TemporaryFolder folder_;
    std::filesystem::path file_;
};

}  // namespace ostrelle::testing
