#pragma once

#include <string>

namespace ostrelle {

// Opens the application a bound desktop entry describes.
class DesktopEntryLauncher {
  public:
    // Starts the entry's program and returns without waiting for it; a failure is logged as the
    // runner's failures are. A path that is not a desktop entry holds no application to open
    // here and is left alone.
    void open(const std::string& path) const;
};

}  // namespace ostrelle
