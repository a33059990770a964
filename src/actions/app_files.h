#pragma once

#include <optional>
#include <string>
#include <vector>

namespace ostrelle {

// One application as a Linux desktop describes it: a desktop entry file of the XDG data folders.
struct DesktopEntry {
    std::string id;       // "org.example.Editor.desktop": unique among the folders
    std::string path;     // the entry's file
    std::string name;     // as the desktop shows it
    std::string icon;     // a theme icon name or a file path; empty when none
    bool hidden = false;  // Hidden, NoDisplay, or not shown on this desktop
};

// What the actions need to know about applications on disk. Platform adapters answer through
// the system's file manager or desktop services; tests use fakes or temporary folders.
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

    // Every desktop entry of the data folders, those of higher precedence first, hidden ones
    // included (a hidden entry still masks those of the same id after it). None where the
    // system has no desktop entries.
    virtual std::vector<DesktopEntry> desktopEntries() const { return {}; }
    // The entry in one file; nothing when it is missing or can't be read as an application.
    virtual std::optional<DesktopEntry> desktopEntry(const std::string& path) const {
        (void)path;
        return std::nullopt;
    }
};

}  // namespace ostrelle
