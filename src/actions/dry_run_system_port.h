#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "actions/recorded_event.h"
#include "actions/system_port.h"

namespace ostrelle {

// One element of a made-up user interface: attributes by their accessibility names.
struct FakeElement {
    using Ptr = std::shared_ptr<FakeElement>;

    std::string name;  // how recordings refer to the element
    std::map<std::string, std::string, std::less<>> strings;
    std::map<std::string, Ptr, std::less<>> elements;
    std::map<std::string, std::vector<Ptr>, std::less<>> lists;

    // A new element with the given name and, when not empty, that "AXRole".
    static Ptr make(std::string name, std::string role = {});
    // Appends to "AXChildren" and returns the child, for building trees in a line.
    Ptr addChild(Ptr child);
};

// A system that records what is done to it and answers from settable values: for tests,
// replays and benchmarks. Nothing reaches the real system.
class DryRunSystemPort final : public SystemPort,
                               private EventOutput,
                               private Workspace,
                               private Accessibility,
                               private Pasteboard,
                               private Feedback,
                               private KeyCodeOutput {
  public:
    static constexpr std::string_view plainTextType = "public.utf8-plain-text";
    static constexpr std::string_view controlCenterID = "com.apple.controlcenter";

    struct Application {
        std::optional<std::string> bundleID;
        FakeElement::Ptr element;  // its accessibility element
    };

    // The answers.
    bool trusted = true;
    std::optional<Application> frontmost;
    std::map<std::string, FakeElement::Ptr, std::less<>> running;  // bundle id → application element
    std::optional<Point> pointer = Point{};
    bool dockAvailable = true;
    std::vector<PasteboardItem> pasteboardItems;
    std::int64_t pasteboardChangeCount = 0;
    // Whether the actions are Linux chords (they then arrive as Linux key codes), and why keys
    // can't be sent, when they can't.
    bool linuxKeyCodes = false;
    std::optional<std::string> keyCodesUnavailable;
    // What ⌘C puts on the pasteboard, as a browser's focused address field would; nothing copies nothing.
    std::optional<std::string> copiesOnCommandC;

    // Puts an application in front; with a window, that is its "AXFocusedWindow".
    void setFrontmost(std::optional<std::string> bundleID, FakeElement::Ptr window = nullptr);
    // Runs Control Center with these menu-bar extras, named by identifier, in menu-bar order.
    void setControlCenterExtras(const std::vector<std::string>& identifiers);
    // One plain-text item on the pasteboard.
    static PasteboardItem plainText(std::string_view text);

    const std::vector<RecordedEvent>& recorded() const { return recorded_; }
    // Told of every effect as it happens, for tools that show them live.
    std::function<void(const RecordedEvent&)> onRecord;
    void clearRecorded() { recorded_.clear(); }

    EventOutput& events() override { return *this; }
    Workspace& workspace() override { return *this; }
    Accessibility& accessibility() override { return *this; }
    Pasteboard& pasteboard() override { return *this; }
    Feedback& feedback() override { return *this; }
    KeyCodeOutput* keyCodes() override { return linuxKeyCodes ? this : nullptr; }

  private:
    void postKey(std::uint16_t key, bool down, EventFlags flags) override;
    void postMouse(MouseEventType type, Point location, EventFlags flags) override;
    void postMediaKey(EventFlags flags, std::int64_t data1) override;
    std::optional<Point> pointerLocation() override { return pointer; }

    std::optional<std::string> frontmostApplicationID() override;
    void openApplication(const std::string& path) override;
    bool sendDockNotification(const std::string& name) override;

    bool isProcessTrusted() override { return trusted; }
    std::optional<AccessibilityElement> frontmostApplication() override;
    std::optional<AccessibilityElement> runningApplication(std::string_view bundleID) override;
    std::optional<std::string> stringAttribute(const AccessibilityElement& element,
                                               std::string_view attribute) override;
    std::optional<AccessibilityElement> elementAttribute(const AccessibilityElement& element,
                                                         std::string_view attribute) override;
    std::optional<std::vector<AccessibilityElement>> elementListAttribute(
        const AccessibilityElement& element, std::string_view attribute) override;
    void performAction(const AccessibilityElement& element, std::string_view action) override;

    std::vector<PasteboardItem> saveItems() override;
    void restoreItems(const std::vector<PasteboardItem>& items) override;
    std::int64_t changeCount() override { return pasteboardChangeCount; }
    std::optional<std::string> string() override;
    void setString(const std::string& text) override;

    std::optional<std::string> unavailableReason() override { return keyCodesUnavailable; }
    void postKeyCode(std::uint16_t code, bool down) override { record(recorded::LinuxKey{code, down}); }

    void beep() override { record(recorded::Beep{}); }
    void haptic() override { record(recorded::Haptic{}); }

    void record(RecordedEvent event) {
        recorded_.push_back(std::move(event));
        if (onRecord) onRecord(recorded_.back());
    }

    std::vector<RecordedEvent> recorded_;
};

}  // namespace ostrelle
