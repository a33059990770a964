#pragma once

#include <optional>
#include <string>
#include <vector>

namespace ostrelle {

// What the actions need to know about application bundles on disk. Platform adapters answer
// through the system's file manager; tests use fakes or temporary folders.
class AppFiles {
  public:
    virtual ~AppFiles() = default;

    // The absolute paths of a folder's immediate contents, hidden files left out; empty when the
    // folder can't be listed.
    virtual std::vector<std::string> contents(const std::string& folder) const = 0;
    virtual bool isDirectory(const std::string& path) const = 0;
    // The name the file manager shows for the path (which may hide the extension).
    virtual std::string displayName(const std::string& path) const = 0;
    // The identifier of the bundle at the path; nothing when it can't be read or has none.
    virtual std::optional<std::string> bundleIdentifier(const std::string& path) const = 0;
    virtual std::string homeDirectory() const = 0;
};

}  // namespace ostrelle
