#pragma once

#include "platform/files/file_system_app_files.h"

namespace ostrelle {

// The plain file system plus the desktop entries of the XDG data folders, read through GIO as
// the desktop's own menus read them.
class GioAppFiles : public FileSystemAppFiles {
  public:
    std::vector<DesktopEntry> desktopEntries() const override;
    std::optional<DesktopEntry> desktopEntry(const std::string& path) const override;
};

}  // namespace ostrelle
