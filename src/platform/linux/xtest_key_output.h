#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <variant>

#include "actions/system_port.h"

struct _XDisplay;

namespace ostrelle {

// Keys and buttons faked through the X server's XTest extension, on a connection of its own. It
// reaches X11 and Xwayland windows only: the way out when the uinput device can't be made.
class XTestKeyOutput final : public KeyCodeOutput {
  public:
    // {} is the display name.
    static constexpr std::string_view noDisplayText = "Ostrelle cannot open the X display {}.";
    static constexpr std::string_view noXTestText =
        "The X display {} does not let programs send keys (it lacks the XTEST extension).";

    // Connects to `displayName` (":0"), or says why it can't be used, as the user should read it.
    static std::variant<std::unique_ptr<XTestKeyOutput>, std::string> create(const std::string& displayName);
    ~XTestKeyOutput() override;
    XTestKeyOutput(const XTestKeyOutput&) = delete;
    XTestKeyOutput& operator=(const XTestKeyOutput&) = delete;

    std::optional<std::string> unavailableReason() override { return std::nullopt; }
    void postKeyCode(std::uint16_t code, bool down) override;

  private:
    explicit XTestKeyOutput(_XDisplay* display) : display_(display) {}

    _XDisplay* display_;
};

}  // namespace ostrelle
