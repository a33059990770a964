#pragma once

#include <string>
#include <vector>

#include "actions/app_files.h"
#include "support/url.h"

namespace ostrelle {

// The applications offered for the "Open an app" action: the bundles in the usual application
// folders, each listed once, sorted by name as a file browser sorts.
class InstalledApps {
  public:
    // Searched in this order, which decides which copy of a duplicated app is kept.
    static std::vector<std::string> folders(const std::string& homeDirectory);
    // Always listed: it lives in none of the folders.
    static const URL& finder();

    // A fresh scan of the folders.
    static std::vector<URL> scan(const AppFiles& files);

    // The applications of a Linux desktop: the file URLs of its desktop entries, each id once
    // (the copy of highest precedence), hidden ones left out, sorted by name as a file browser
    // sorts.
    static std::vector<URL> scanDesktopEntries(const AppFiles& files);
};

}  // namespace ostrelle
