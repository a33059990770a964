#pragma once

#include "actions/app_files.h"

namespace ostrelle {

// Application bundles as the plain file system shows them, for every build: names are file
// names, and a bundle's identifier comes from its Info.plist when that is written as XML.
// It knows no desktop entries; the Linux adapter adds those.
class FileSystemAppFiles : public AppFiles {
  public:
    std::vector<std::string> contents(const std::string& folder) const override;
    bool isDirectory(const std::string& path) const override;
    std::string displayName(const std::string& path) const override;
    std::optional<std::string> bundleIdentifier(const std::string& path) const override;
    // HOME; empty when it is not set.
    std::string homeDirectory() const override;
};

}  // namespace ostrelle
