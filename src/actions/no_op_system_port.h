#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "actions/system_port.h"

namespace ostrelle {

// A system that takes everything and does nothing, and lets every action through: for
// benchmarks of the decisions alone.
class NoOpSystemPort final : public SystemPort,
                             private EventOutput,
                             private Workspace,
                             private Accessibility,
                             private Pasteboard,
                             private Feedback {
  public:
    EventOutput& events() override { return *this; }
    Workspace& workspace() override { return *this; }
    Accessibility& accessibility() override { return *this; }
    Pasteboard& pasteboard() override { return *this; }
    Feedback& feedback() override { return *this; }

  private:
    void postKey(std::uint16_t, bool, EventFlags) override {}
    void postMouse(MouseEventType, Point, EventFlags) override {}
    void postMediaKey(EventFlags, std::int64_t) override {}
    std::optional<Point> pointerLocation() override { return Point{}; }

    std::optional<std::string> frontmostApplicationID() override { return std::nullopt; }
    void openApplication(const std::string&) override {}
    bool sendDockNotification(const std::string&) override { return true; }

    bool isProcessTrusted() override { return true; }
    std::optional<AccessibilityElement> frontmostApplication() override { return std::nullopt; }
    std::optional<AccessibilityElement> runningApplication(std::string_view) override { return std::nullopt; }
    std::optional<std::string> stringAttribute(const AccessibilityElement&, std::string_view) override {
        return std::nullopt;
    }
    std::optional<AccessibilityElement> elementAttribute(const AccessibilityElement&,
                                                         std::string_view) override {
        return std::nullopt;
    }
    std::optional<std::vector<AccessibilityElement>> elementListAttribute(const AccessibilityElement&,
                                                                          std::string_view) override {
        return std::nullopt;
    }
    void performAction(const AccessibilityElement&, std::string_view) override {}

    std::vector<PasteboardItem> saveItems() override { return {}; }
    void restoreItems(const std::vector<PasteboardItem>&) override {}
    std::int64_t changeCount() override { return 0; }
    std::optional<std::string> string() override { return std::nullopt; }
    void setString(const std::string&) override {}

    void beep() override {}
    void haptic() override {}
};

}  // namespace ostrelle
