#pragma once

// The bundled example recordings as the tests see them: where they are, what their header
// promises, and how to run a program over them.

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "testing/temporary_folder.h"

namespace ostrelle::testing {

inline std::filesystem::path examplesFolder() {
    return std::filesystem::path(OSTRELLE_SOURCE_DIR) / "examples";
}

// Every examples/*.jsonl, in name order.
inline std::vector<std::filesystem::path> exampleRecordings() {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(examplesFolder())) {
        if (entry.path().extension() == ".jsonl") files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

inline std::filesystem::path shapesFileOf(const std::filesystem::path& recording) {
    std::filesystem::path shapes = recording;
    shapes.replace_extension(".shapes.json");
    return shapes;
}

struct ExampleHeader {
    std::string description;            // the first line, without "# "
    std::vector<std::string> expected;  // the ids of the "# expect:" lines, in order
};

inline ExampleHeader readHeader(const std::filesystem::path& recording) {
    constexpr std::string_view commentMark = "# ";
    constexpr std::string_view expectMark = "# expect: ";
    ExampleHeader header;
    std::ifstream in(recording);
    std::string line;
    bool first = true;
    while (std::getline(in, line)) {
        if (first && line.starts_with(commentMark) && !line.starts_with(expectMark)) {
            header.description = line.substr(commentMark.size());
        } else if (line.starts_with(expectMark)) {
            header.expected.push_back(line.substr(expectMark.size()));
        }
        first = false;
    }
    return header;
}

struct CommandResult {
    int status = -1;
    std::string output;  // standard output only
};

inline CommandResult runCommand(const std::string& command) {
    CommandResult result;
    FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) return result;
    char buffer[4096];
    std::size_t count = 0;
    while ((count = std::fread(buffer, 1, sizeof buffer, pipe)) > 0) result.output.append(buffer, count);
    result.status = pclose(pipe);
    return result;
}

// For the shell; the paths here never hold a quote themselves.
inline std::string quoted(const std::filesystem::path& path) {
    std::string text(1, '\'');
    text += path.string();
    text += '\'';
    return text;
}

}  // namespace ostrelle::testing
