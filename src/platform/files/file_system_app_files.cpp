#include "platform/files/file_system_app_files.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>

#include "platform/files/info_plist.h"
#include "support/atomic_file.h"

namespace ostrelle {
namespace {

namespace fs = std::filesystem;

constexpr auto infoPlistPath = "Contents/Info.plist";
constexpr std::string_view bundleIdentifierKey = "CFBundleIdentifier";
// An Info.plist is a few kilobytes; anything far larger is not one worth reading.
constexpr std::uintmax_t infoPlistMaxSize = 1 << 20;  // bytes

}  // namespace

std::vector<std::string> FileSystemAppFiles::contents(const std::string& folder) const {
    std::vector<std::string> paths;
    std::error_code failed;
    for (fs::directory_iterator it(folder, failed), end; !failed && it != end; it.increment(failed)) {
        const std::string name = it->path().filename().string();
        if (!name.starts_with('.')) paths.push_back(it->path().string());
    }
    if (failed) return {};
    // The system lists in no particular order; a fixed one keeps results repeatable.
    std::sort(paths.begin(), paths.end());
    return paths;
}

bool FileSystemAppFiles::isDirectory(const std::string& path) const {
    std::error_code failed;
    return fs::is_directory(path, failed);
}

std::string FileSystemAppFiles::displayName(const std::string& path) const {
    fs::path file(path);
    if (!file.has_filename()) file = file.parent_path();
    return file.filename().string();
}

std::optional<std::string> FileSystemAppFiles::bundleIdentifier(const std::string& path) const {
    const fs::path plist = fs::path(path) / infoPlistPath;
    std::error_code failed;
    const auto size = fs::file_size(plist, failed);
    if (failed || size > infoPlistMaxSize) return std::nullopt;
    const FileReadResult read = readWholeFile(plist);
    if (read.status != FileReadResult::Status::ok) return std::nullopt;
    auto identifier = topLevelPlistString(read.bytes, bundleIdentifierKey);
    if (identifier && identifier->empty()) return std::nullopt;
    return identifier;
}

std::string FileSystemAppFiles::homeDirectory() const {
    const char* home = std::getenv("HOME");
    return home ? home : "";
}

}  // namespace ostrelle
