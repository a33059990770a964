#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "actions/event_flags.h"
#include "support/point.h"

namespace ostrelle {

// The kinds of mouse event the runner posts, in the macOS event-type numbering.
enum class MouseEventType : std::uint8_t {
    leftDown = 1,
    leftUp = 2,
};

std::string_view toString(MouseEventType type);

// Synthesized input, posted at the hardware-event level so that the front application sees it
// as if typed. An event the system refuses to create is skipped without a word.
class EventOutput {
  public:
    virtual ~EventOutput() = default;

    // One key-down or key-up, the modifiers travelling as flags on the event itself.
    virtual void postKey(std::uint16_t key, bool down, EventFlags flags) = 0;
    // A left-button event at a location in screen points.
    virtual void postMouse(MouseEventType type, Point location, EventFlags flags) = 0;
    // A system-defined media-key event (subtype 8, data2 −1); data1 holds the key in its upper
    // half and the down/up state in its lower half, as the system expects it.
    virtual void postMediaKey(EventFlags flags, std::int64_t data1) = 0;
    // Where the pointer is now, in screen points; nothing when it can't be read.
    virtual std::optional<Point> pointerLocation() = 0;
};

// The running applications and the Dock.
class Workspace {
  public:
    virtual ~Workspace() = default;

    // The bundle identifier of the frontmost application; nothing when there is none or it has none.
    virtual std::optional<std::string> frontmostApplicationID() = 0;
    // Opens (or activates) the application bundle at an absolute path, without waiting for it;
    // a path that holds no application does nothing visible.
    virtual void openApplication(const std::string& path) = 0;
    // Posts a notification through the Dock's private entry point, looked up by name once on
    // first use; false when the system has no such entry point, so nothing was sent.
    virtual bool sendDockNotification(const std::string& name) = 0;
};

// An element of another application's user interface. The core only passes it back to the port
// that made it; what it holds (a retained system reference, a node of a fake tree) is the port's.
class AccessibilityElement {
  public:
    AccessibilityElement() = default;
    explicit AccessibilityElement(std::shared_ptr<const void> reference) : reference_(std::move(reference)) {}

    const void* reference() const { return reference_.get(); }
    explicit operator bool() const { return reference_ != nullptr; }

  private:
    std::shared_ptr<const void> reference_;
};

// Reading and pressing other applications' user interface. Attribute reads give nothing when
// the attribute is missing, unreadable, or of another type than asked for.
class Accessibility {
  public:
    virtual ~Accessibility() = default;

    // Whether the user has let this program control the computer; keystrokes are dropped without it.
    virtual bool isProcessTrusted() = 0;
    // The element of the frontmost application; nothing when no application is in front.
    virtual std::optional<AccessibilityElement> frontmostApplication() = 0;
    // The element of a running application found by bundle identifier; nothing when it isn't running.
    virtual std::optional<AccessibilityElement> runningApplication(std::string_view bundleID) = 0;

    virtual std::optional<std::string> stringAttribute(const AccessibilityElement& element,
                                                       std::string_view attribute) = 0;
    virtual std::optional<AccessibilityElement> elementAttribute(const AccessibilityElement& element,
                                                                 std::string_view attribute) = 0;
    virtual std::optional<std::vector<AccessibilityElement>> elementListAttribute(
        const AccessibilityElement& element, std::string_view attribute) = 0;
    // Performs a named action ("AXPress"); whether it worked is not reported.
    virtual void performAction(const AccessibilityElement& element, std::string_view action) = 0;
};

// One piece of data on the pasteboard under one type identifier.
struct PasteboardEntry {
    std::string type;
    std::vector<std::uint8_t> data;

    friend bool operator==(const PasteboardEntry&, const PasteboardEntry&) = default;
};

// One pasteboard item: its representations in the order the item lists its types.
using PasteboardItem = std::vector<PasteboardEntry>;

// The general (copy and paste) pasteboard.
class Pasteboard {
  public:
    virtual ~Pasteboard() = default;

    // Every item with every type that has data, in order.
    virtual std::vector<PasteboardItem> saveItems() = 0;
    // Clears the pasteboard and writes the items back at once; no items leaves it cleared.
    virtual void restoreItems(const std::vector<PasteboardItem>& items) = 0;
    // Grows whenever anyone changes the contents.
    virtual std::int64_t changeCount() = 0;
    // The plain-text contents; nothing when there are none.
    virtual std::optional<std::string> string() = 0;
    // Clears the pasteboard and puts one plain-text string on it.
    virtual void setString(const std::string& text) = 0;
};

// What the user hears or feels.
class Feedback {
  public:
    virtual ~Feedback() = default;

    // The system alert sound.
    virtual void beep() = 0;
    // A short tap of the trackpad's haptic engine.
    virtual void haptic() = 0;
    // Whether this system has one at all; where it hasn't, the setting is not offered.
    virtual bool hasHaptics() const { return true; }
};

// Keys and buttons in the Linux input numbering (linux_key_codes.h), pressed and released one at
// a time; a button acts at the pointer where it is. Desktops that expect Linux chords get their
// actions through it.
class KeyCodeOutput {
  public:
    virtual ~KeyCodeOutput() = default;

    // Why nothing can be sent (no permission, no display), as the user should read it; nothing
    // when events go out.
    virtual std::optional<std::string> unavailableReason() = 0;
    virtual void postKeyCode(std::uint16_t code, bool down) = 0;
};

// Everything the actions do to the operating system. Each call of the parts maps onto one
// platform call, so that the decisions (remaps, searches, retries) stay in the portable core.
class SystemPort {
  public:
    virtual ~SystemPort() = default;

    virtual EventOutput& events() = 0;
    virtual Workspace& workspace() = 0;
    virtual Accessibility& accessibility() = 0;
    virtual Pasteboard& pasteboard() = 0;
    virtual Feedback& feedback() = 0;
    // Where actions are Linux chords; nothing on systems that take the macOS events above.
    virtual KeyCodeOutput* keyCodes() { return nullptr; }
};

}  // namespace ostrelle
