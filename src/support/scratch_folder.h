#pragma once

#include <stdlib.h>

#include <filesystem>
#include <string>
#include <string_view>

namespace ostrelle {

// A fresh folder under the system's temporary directory, removed with everything in it when this
// goes away: for replays that work on a copy of the user's files, and for benchmarks and tests.
// `path()` is empty when no folder could be made.
class ScratchFolder {
  public:
    explicit ScratchFolder(std::string_view prefix = "ostrelle") {
        std::string pattern =
            (std::filesystem::temp_directory_path() / (std::string(prefix) + "-XXXXXX")).string();
        if (::mkdtemp(pattern.data()) != nullptr) path_ = pattern;
    }
    ~ScratchFolder() {
        if (path_.empty()) return;
        std::error_code ignored;
        // Something inside may have been made read-only, to provoke failures.
        std::filesystem::permissions(path_, std::filesystem::perms::owner_all, ignored);
        std::filesystem::remove_all(path_, ignored);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }
    std::filesystem::path operator/(const std::filesystem::path& name) const { return path_ / name; }

  private:
    std::filesystem::path path_;
};

}  // namespace ostrelle
