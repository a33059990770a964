#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace ostrelle {

// Replaces the file at `path` with `bytes` so that a crash or power loss at any instant leaves
// either the old file or the new one, never a torn one: the bytes go to a temporary file in the
// same folder, are flushed to disk, and the temporary file is renamed over the target.
// Missing parent folders are created. Returns a description of the failure, or nothing on success.
std::optional<std::string> writeFileAtomically(const std::filesystem::path& path, std::string_view bytes);

// Removes the temporary files that writers of `path` killed halfway left behind. Only safe
// while no other writer of `path` can be halfway (hold its folder's lock).
void removeAbandonedTemporaries(const std::filesystem::path& path);

// Reads a whole file. Distinguishes a missing file from one that cannot be read.
struct FileReadResult {
    enum class Status { ok, missing, unreadable };
    Status status = Status::ok;
    std::string bytes;
    std::string error;  // for unreadable
};
FileReadResult readWholeFile(const std::filesystem::path& path);

}  // namespace ostrelle
