#include "actions/dry_run_system_port.h"

#include <algorithm>

namespace ostrelle {
namespace {

constexpr std::string_view roleAttribute = "AXRole";
constexpr std::string_view childrenAttribute = "AXChildren";
constexpr std::string_view identifierAttribute = "AXIdentifier";
constexpr std::string_view focusedWindowAttribute = "AXFocusedWindow";
constexpr std::string_view extrasMenuBarAttribute = "AXExtrasMenuBar";

// The copy shortcut a browser's address field answers: C with command.
constexpr std::uint16_t copyKey = 8;

AccessibilityElement handleOf(const FakeElement::Ptr& element) {
    return AccessibilityElement(std::shared_ptr<const void>(element, element.get()));
}

// Only handles this port made are ever given back to it.
const FakeElement& nodeOf(const AccessibilityElement& element) {
    return *static_cast<const FakeElement*>(element.reference());
}

std::vector<std::uint8_t> bytesOf(std::string_view text) {
    return {text.begin(), text.end()};
}

}  // namespace

FakeElement::Ptr FakeElement::make(std::string name, std::string role) {
    auto element = std::make_shared<FakeElement>();
    element->name = std::move(name);
    if (!role.empty()) element->strings[std::string(roleAttribute)] = std::move(role);
    return element;
}

FakeElement::Ptr FakeElement::addChild(Ptr child) {
    lists[std::string(childrenAttribute)].push_back(child);
    return child;
}

void DryRunSystemPort::setFrontmost(std::optional<std::string> bundleID, FakeElement::Ptr window) {
    auto application = FakeElement::make("front application", "AXApplication");
    if (window) application->elements[std::string(focusedWindowAttribute)] = std::move(window);
    frontmost = Application{std::move(bundleID), std::move(application)};
}

void DryRunSystemPort::setControlCenterExtras(const std::vector<std::string>& identifiers) {
    auto application = FakeElement::make("Control Center", "AXApplication");
    auto menuBar = FakeElement::make("extras menu bar", "AXMenuBar");
    menuBar->lists[std::string(childrenAttribute)];  // readable even when empty
    for (const std::string& identifier : identifiers) {
        menuBar->addChild(FakeElement::make(identifier, "AXMenuBarItem"))
            ->strings[std::string(identifierAttribute)] = identifier;
    }
    application->elements[std::string(extrasMenuBarAttribute)] = std::move(menuBar);
    running[std::string(controlCenterID)] = std::move(application);
}

PasteboardItem DryRunSystemPort::plainText(std::string_view text) {
    return {PasteboardEntry{std::string(plainTextType), bytesOf(text)}};
}

void DryRunSystemPort::postKey(std::uint16_t key, bool down, EventFlags flags) {
    record(recorded::Key{key, down, flags});
    if (key == copyKey && down && (flags & EventFlag::command) != 0 && copiesOnCommandC) {
        pasteboardItems = {plainText(*copiesOnCommandC)};
        ++pasteboardChangeCount;
    }
}

void DryRunSystemPort::postMouse(MouseEventType type, Point location, EventFlags flags) {
    record(recorded::Mouse{type, location, flags});
}

void DryRunSystemPort::postMediaKey(EventFlags flags, std::int64_t data1) {
    record(recorded::MediaKey{flags, data1});
}

std::optional<std::string> DryRunSystemPort::frontmostApplicationID() {
    return frontmost ? frontmost->bundleID : std::nullopt;
}

void DryRunSystemPort::openApplication(const std::string& path) {
    record(recorded::OpenApplication{path});
}

bool DryRunSystemPort::sendDockNotification(const std::string& name) {
    if (!dockAvailable) return false;
    record(recorded::DockNotification{name});
    return true;
}

std::optional<AccessibilityElement> DryRunSystemPort::frontmostApplication() {
    if (!frontmost || !frontmost->element) return std::nullopt;
    return handleOf(frontmost->element);
}

std::optional<AccessibilityElement> DryRunSystemPort::runningApplication(std::string_view bundleID) {
    const auto it = running.find(bundleID);
    if (it == running.end() || !it->second) return std::nullopt;
    return handleOf(it->second);
}

std::optional<std::string> DryRunSystemPort::stringAttribute(const AccessibilityElement& element,
                                                             std::string_view attribute) {
    const FakeElement& node = nodeOf(element);
    const auto it = node.strings.find(attribute);
    if (it == node.strings.end()) return std::nullopt;
    return it->second;
}

std::optional<AccessibilityElement> DryRunSystemPort::elementAttribute(const AccessibilityElement& element,
                                                                       std::string_view attribute) {
    const FakeElement& node = nodeOf(element);
    const auto it = node.elements.find(attribute);
    if (it == node.elements.end() || !it->second) return std::nullopt;
    return handleOf(it->second);
}

std::optional<std::vector<AccessibilityElement>> DryRunSystemPort::elementListAttribute(
    const AccessibilityElement& element, std::string_view attribute) {
    const FakeElement& node = nodeOf(element);
    const auto it = node.lists.find(attribute);
    if (it == node.lists.end()) return std::nullopt;
    std::vector<AccessibilityElement> list;
    list.reserve(it->second.size());
    for (const FakeElement::Ptr& child : it->second) list.push_back(handleOf(child));
    return list;
}

void DryRunSystemPort::performAction(const AccessibilityElement& element, std::string_view action) {
    record(recorded::Press{nodeOf(element).name, std::string(action)});
}

std::vector<PasteboardItem> DryRunSystemPort::saveItems() {
    record(recorded::PasteboardSave{});
    return pasteboardItems;
}

void DryRunSystemPort::restoreItems(const std::vector<PasteboardItem>& items) {
    record(recorded::PasteboardRestore{items});
    pasteboardItems = items;
    ++pasteboardChangeCount;
}

std::optional<std::string> DryRunSystemPort::string() {
    for (const PasteboardItem& item : pasteboardItems) {
        const auto entry = std::find_if(item.begin(), item.end(),
                                        [](const PasteboardEntry& e) { return e.type == plainTextType; });
        if (entry != item.end()) return std::string(entry->data.begin(), entry->data.end());
    }
    return std::nullopt;
}

void DryRunSystemPort::setString(const std::string& text) {
    record(recorded::PasteboardSet{text});
    pasteboardItems = {plainText(text)};
    ++pasteboardChangeCount;
}

}  // namespace ostrelle
