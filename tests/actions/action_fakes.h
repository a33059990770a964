#pragma once

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "actions/app_files.h"
#include "actions/keyboard_layout.h"

namespace ostrelle::testing {

// A keyboard layout that knows only the keys it was given.
class FakeKeyboardLayout : public KeyboardLayout {
  public:
    explicit FakeKeyboardLayout(std::map<std::uint16_t, std::string> keys) : keys_(std::move(keys)) {}

    std::optional<std::string> characters(std::uint16_t keyCode) const override {
        asked.push_back(keyCode);
        return keys_.contains(keyCode) ? std::optional(keys_.at(keyCode)) : std::nullopt;
    }

    mutable std::vector<std::uint16_t> asked;

  private:
    std::map<std::uint16_t, std::string> keys_;
};

// An in-memory file system of folders and application bundles.
class FakeAppFiles : public AppFiles {
  public:
    struct Bundle {
        std::string displayName;
        std::optional<std::string> identifier;
    };

    std::string home = "/Users/tester";
    std::map<std::string, std::vector<std::string>> folders;  // folder → entry paths, in listing order
    std::set<std::string> directories;
    std::map<std::string, Bundle> bundles;

    // Adds a bundle (a directory) to a folder's listing.
    void addBundle(const std::string& folder, const std::string& fileName,
                   std::optional<std::string> identifier,
                   std::optional<std::string> displayName = std::nullopt) {
        const std::string path = folder + "/" + fileName;
        folders[folder].push_back(path);
        directories.insert(path);
        bundles[path] = {displayName.value_or(fileName), std::move(identifier)};
    }

    std::vector<std::string> contents(const std::string& folder) const override {
        return folders.contains(folder) ? folders.at(folder) : std::vector<std::string>{};
    }
    bool isDirectory(const std::string& path) const override { return directories.contains(path); }
    std::string displayName(const std::string& path) const override {
        return bundles.contains(path) ? bundles.at(path).displayName : path.substr(path.rfind('/') + 1);
    }
    std::optional<std::string> bundleIdentifier(const std::string& path) const override {
        return bundles.contains(path) ? bundles.at(path).identifier : std::nullopt;
    }
    std::string homeDirectory() const override { return home; }

    std::vector<DesktopEntry> entries;  // in precedence order
    std::vector<DesktopEntry> desktopEntries() const override { return entries; }
    std::optional<DesktopEntry> desktopEntry(const std::string& path) const override {
        for (const DesktopEntry& entry : entries) {
            if (entry.path == path) return entry;
        }
        return std::nullopt;
    }
};

}  // namespace ostrelle::testing
