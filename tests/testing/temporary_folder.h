#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "support/scratch_folder.h"

namespace ostrelle::testing {

// Tests put every file they touch in one of these, never next to the user's own.
class TemporaryFolder : public ScratchFolder {
  public:
    TemporaryFolder() : ScratchFolder("ostrelle-test") {
        if (path().empty()) ADD_FAILURE() << "cannot make a temporary folder";
    }
};

inline std::string readText(const std::filesystem::path& file) {
    std::error_code missing;
    const auto size = std::filesystem::file_size(file, missing);
    if (missing) return {};
    std::string text(size, '\0');
    std::ifstream in(file, std::ios::binary);
    in.read(text.data(), static_cast<std::streamsize>(size));
    text.resize(static_cast<std::size_t>(in.gcount()));
    return text;
}

inline std::vector<std::string> readLines(const std::filesystem::path& file) {
    std::vector<std::string> lines;
    std::ifstream in(file, std::ios::binary);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

inline void writeText(const std::filesystem::path& file, const std::string& text) {
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    out << text;
}

}  // namespace ostrelle::testing
