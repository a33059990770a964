#pragma once

#include <sys/types.h>

#include <chrono>
#include <string>

namespace ostrelle::testing {

// A private X server for one test: Xvfb on a display number it picks itself, stopped when this
// goes away. Construction waits (bounded) until the server takes connections and throws when it
// doesn't come up.
class XvfbServer {
  public:
    static constexpr std::chrono::seconds startLimit{20};

    XvfbServer();
    ~XvfbServer();
    XvfbServer(const XvfbServer&) = delete;
    XvfbServer& operator=(const XvfbServer&) = delete;

    // ":N", as DISPLAY takes it.
    const std::string& display() const { return display_; }

  private:
    pid_t pid_ = -1;
    std::string display_;
};

}  // namespace ostrelle::testing
