#pragma once

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "support/default_paths.h"
#include "support/scratch_folder.h"

namespace ostrelle::testing {

// HOME and the XDG base folders, fresh and empty, under one scratch folder: what a test process
// or a command line started by a test takes for the user's own files, so that nothing a test
// runs can reach the real ones.
class ScratchHome {
  public:
    ScratchHome();

    // Each variable with the folder it names here: HOME, XDG_CONFIG_HOME, XDG_STATE_HOME, ...
    const std::vector<std::pair<std::string, std::filesystem::path>>& variables() const { return variables_; }
    // These variables alone, as a program started with them would see its environment.
    EnvironmentLookup lookup() const;
    // Where a program started with these variables keeps its log.
    std::filesystem::path logFile() const { return defaultLogPath(lookup()); }
    // For a started program's TMPDIR, so that what one killed leaves behind goes away with this.
    std::filesystem::path temporaryFolder() const { return root_ / "tmp"; }

    // Points this process's own variables here. Only before any other thread exists.
    void enter() const;

    // Every file, and every empty folder, that something put into these folders; the folders
    // themselves do not count.
    std::vector<std::filesystem::path> touched() const;
    // Empties the folders again.
    void clear() const;

  private:
    ScratchFolder root_{"ostrelle-test-home"};
    std::vector<std::pair<std::string, std::filesystem::path>> variables_;
};

// The folders the test binary itself runs in, set up by its main before any test. A command line
// that a test starts sees them too unless given its own; they must stay empty, and a test that
// leaves anything in them fails.
const ScratchHome& guardedHome();

}  // namespace ostrelle::testing
