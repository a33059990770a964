// The runner's actions that work through other applications' user interface: the first or
// last tab of the front window, and the menu-bar extras.
#include <cstddef>
#include <deque>
#include <map>
#include <string_view>

#include "actions/action_runner.h"
#include "actions/action_steps.h"

namespace ostrelle {
namespace {

constexpr std::string_view noTabGroupText =
    "go to first/last tab failed: no tab group found in the front window";
constexpr std::string_view extrasUnreadableText =
    "action failed: Control Center's menu-bar items aren't readable";
constexpr std::string_view noneOfPrefix = "action failed: none of ";
constexpr std::string_view noneOfSuffix = " is in the menu bar";
constexpr std::string_view idSeparator = ", ";

constexpr std::string_view roleAttribute = "AXRole";
constexpr std::string_view childrenAttribute = "AXChildren";
constexpr std::string_view tabsAttribute = "AXTabs";
constexpr std::string_view focusedWindowAttribute = "AXFocusedWindow";
constexpr std::string_view extrasMenuBarAttribute = "AXExtrasMenuBar";
constexpr std::string_view identifierAttribute = "AXIdentifier";
constexpr std::string_view tabGroupRole = "AXTabGroup";
constexpr std::string_view pressAction = "AXPress";

constexpr std::string_view controlCenterID = "com.apple.controlcenter";

// Elements examined before the tab search gives up: a window full of web content holds many
// thousands, and each read is a round trip to the other application.
constexpr std::size_t maxExaminedElements = 300;

// Breadth first, so that the window's own tab bar is found before anything inside its pages.
std::optional<AccessibilityElement> findTabGroup(Accessibility& accessibility, AccessibilityElement window) {
    std::deque<AccessibilityElement> queue{std::move(window)};
    for (std::size_t examined = 0; !queue.empty() && examined < maxExaminedElements; ++examined) {
        AccessibilityElement element = std::move(queue.front());
        queue.pop_front();
        if (accessibility.stringAttribute(element, roleAttribute) == tabGroupRole) return element;
        if (auto children = accessibility.elementListAttribute(element, childrenAttribute)) {
            for (AccessibilityElement& child : *children) queue.push_back(std::move(child));
        }
    }
    return std::nullopt;
}

// Presses the first or last tab; false when any step on the way finds nothing.
bool pressEndTab(Accessibility& accessibility, bool last) {
    const auto application = accessibility.frontmostApplication();
    if (!application) return false;
    auto window = accessibility.elementAttribute(*application, focusedWindowAttribute);
    if (!window) return false;
    const auto group = findTabGroup(accessibility, std::move(*window));
    if (!group) return false;
    auto tabs = accessibility.elementListAttribute(*group, tabsAttribute);
    if (!tabs) tabs = accessibility.elementListAttribute(*group, childrenAttribute);
    if (!tabs || tabs->empty()) return false;
    accessibility.performAction(last ? tabs->back() : tabs->front(), pressAction);
    return true;
}

std::string joined(const std::vector<std::string>& ids) {
    std::string text;
    for (const std::string& id : ids) {
        if (!text.empty()) text += idSeparator;
        text += id;
    }
    return text;
}

}  // namespace

void ActionRunner::selectTab(bool last) {
    if (!pressEndTab(system_.accessibility(), last)) action_steps::fail(system_, noTabGroupText);
}

void ActionRunner::pressMenuExtra(const std::vector<std::string>& ids) {
    Accessibility& accessibility = system_.accessibility();
    std::optional<std::vector<AccessibilityElement>> items;
    if (const auto controlCenter = accessibility.runningApplication(controlCenterID)) {
        if (const auto menuBar = accessibility.elementAttribute(*controlCenter, extrasMenuBarAttribute)) {
            items = accessibility.elementListAttribute(*menuBar, childrenAttribute);
        }
    }
    if (!items) {
        action_steps::fail(system_, extrasUnreadableText);
        return;
    }

    std::map<std::string, AccessibilityElement, std::less<>> byIdentifier;
    for (AccessibilityElement& item : *items) {
        // The first of two items with one identifier is kept: emplace leaves an existing entry.
        if (auto identifier = accessibility.stringAttribute(item, identifierAttribute)) {
            byIdentifier.emplace(std::move(*identifier), std::move(item));
        }
    }
    for (const std::string& id : ids) {
        const auto found = byIdentifier.find(id);
        if (found != byIdentifier.end()) {
            accessibility.performAction(found->second, pressAction);
            return;
        }
    }
    action_steps::fail(system_, std::string(noneOfPrefix) + joined(ids) + std::string(noneOfSuffix));
}

}  // namespace ostrelle
