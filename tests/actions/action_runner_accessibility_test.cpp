// The actions that press other applications' user interface: the first or last tab of the
// front window, found breadth first within 300 elements, and the menu-bar extras.
#include <gtest/gtest.h>

#include "action_runner_fixture.h"

namespace ostrelle::testing {
namespace {

const std::string noTabGroupText = "go to first/last tab failed: no tab group found in the front window";
const std::string unreadableExtrasText = "action failed: Control Center's menu-bar items aren't readable";

std::vector<RecordedEvent> pressOf(std::string element) {
    return {recorded::Press{std::move(element), "AXPress"}};
}

FakeElement::Ptr node(std::string name, std::string role,
                      const std::vector<FakeElement::Ptr>& children = {}) {
    auto element = FakeElement::make(std::move(name), std::move(role));
    for (const auto& child : children) element->addChild(child);
    return element;
}

// A tab group with the tabs listed under "AXTabs".
FakeElement::Ptr tabs(const std::vector<std::string>& names,
                      const std::vector<FakeElement::Ptr>& children = {}) {
    auto group = node("tabs", "AXTabGroup", children);
    auto& list = group->lists["AXTabs"];  // present even when empty
    for (const std::string& name : names) list.push_back(node(name, "AXRadioButton"));
    return group;
}

// The tab group is the `position`-th element a breadth-first search meets: a chain of single
// children below the window, which is the first.
FakeElement::Ptr tabsAt(std::size_t position) {
    FakeElement::Ptr chain = tabs({"first tab", "last tab"});
    for (std::size_t i = 2; i < position; ++i) chain = node("group", "AXGroup", {chain});
    return node("window", "AXWindow", {chain});
}

// The tab group's parent comes first, then `leaves` childless elements: the group is element
// leaves + 3.
FakeElement::Ptr wideWindow(int leaves) {
    std::vector<FakeElement::Ptr> children{node("holder", "AXGroup", {tabs({"tab"})})};
    for (int i = 0; i < leaves; ++i) children.push_back(node("leaf", "AXStaticText"));
    return node("window", "AXWindow", children);
}

// Stands for no app in front at all, rather than an app without a window.
const FakeElement::Ptr noApp = node("no app in front", "");

const FakeElement::Ptr toolbarAndTabs =
    node("window", "AXWindow",
         {node("toolbar", "AXToolbar", {node("back", "AXButton")}), tabs({"one", "two", "three"})});

TEST_F(ActionRunnerTest, TabsPressesTheFirstOrLastTabOrFails) {
    const struct {
        const char* name;
        FakeElement::Ptr window;  // the front app's focused window; null: none
        const char* option;
        const char* pressed;  // null: fails
    } rows[] = {
        {"first", toolbarAndTabs, "first", "one"},
        {"last", toolbarAndTabs, "last", "three"},
        // Breadth first: the page's tab strip sits deep in the first branch, the window's own tab
        // bar one level down in the second.
        {"shallowestWinsOverAnEarlierDeepOne",
         node("window", "AXWindow",
              {node("page", "AXGroup", {node("frame", "AXGroup", {tabs({"page tab"})})}),
               tabs({"window tab"})}),
         "first", "window tab"},
        {"childrenWithoutATabList",
         node("tabs", "AXTabGroup", {node("left", "AXRadioButton"), node("right", "AXRadioButton")}), "last",
         "right"},
        {"anEmptyTabListEvenWithChildren", tabs({}, {node("scroll", "AXScrollArea")}), "first", nullptr},
        {"aGroupWithNoList", node("tabs", "AXTabGroup"), "last", nullptr},
        {"noAppInFront", noApp, "first", nullptr},
        {"noFocusedWindow", nullptr, "first", nullptr},
        {"noTabGroup", node("window", "AXWindow", {node("text", "AXTextArea"), node("no role", "")}), "last",
         nullptr},
        {"theThreeHundredthElementIsExamined", tabsAt(300), "last", "last tab"},
        {"theThreeHundredAndFirstIsNot", tabsAt(301), "last", nullptr},
        {"theCapCountsAcrossBranches", wideWindow(297), "first", "tab"},
        {"andStopsAcrossBranches", wideWindow(298), "first", nullptr},
    };
    for (const auto& row : rows) {
        system.clearRecorded();
        system.frontmost.reset();
        if (row.window != noApp) system.setFrontmost("com.apple.finder", row.window);
        const std::size_t failures = errors().size();
        run("tabs", row.option);
        EXPECT_EQ(events(), row.pressed ? pressOf(row.pressed) : std::vector<RecordedEvent>{beep})
            << row.name;
        EXPECT_EQ(errors().size(), failures + (row.pressed ? 0 : 1)) << row.name;
    }
    EXPECT_EQ(errors(), std::vector<std::string>(errors().size(), noTabGroupText));
}

const std::string focus = "com.apple.menuextra.focusmode";
const std::string controlCenter = "com.apple.menuextra.controlcenter";
const std::string clock = "com.apple.menuextra.clock";

TEST_F(ActionRunnerTest, MenuExtrasPressTheFirstListedIdentifierPresent) {
    const struct {
        const char* name;
        std::vector<std::string> extras;  // in menu-bar order
        const char* option;
        std::string pressed;  // empty: none is there
    } rows[] = {
        {"notifications", {"com.apple.menuextra.battery", clock}, "notify", clock},
        {"focusWhateverTheMenuBarOrder", {controlCenter, focus}, "focus", focus},
        {"focusFallsBackToControlCenter", {clock, controlCenter}, "focus", controlCenter},
        {"noneOfThem", {clock}, "focus", ""},
    };
    for (const auto& row : rows) {
        system.clearRecorded();
        system.setControlCenterExtras(row.extras);
        run("system", row.option);
        EXPECT_EQ(events(), row.pressed.empty() ? std::vector<RecordedEvent>{beep} : pressOf(row.pressed))
            << row.name;
    }
    // Only the last fails, naming every identifier it looked for.
    EXPECT_EQ(errors(), std::vector<std::string>{"action failed: none of " + focus + ", " + controlCenter +
                                                 " is in the menu bar"});
}

TEST_F(ActionRunnerTest, OfTwoExtrasWithOneIdentifierTheFirstIsPressed) {
    system.setControlCenterExtras({});
    auto& items = system.running["com.apple.controlcenter"]->elements["AXExtrasMenuBar"]->lists["AXChildren"];
    for (const char* name : {"unnamed", "first clock", "second clock"}) {
        items.push_back(node(name, "AXMenuBarItem"));
        if (items.size() > 1) items.back()->strings["AXIdentifier"] = clock;
    }
    run("system", "notify");
    EXPECT_EQ(events(), pressOf("first clock"));
}

TEST_F(ActionRunnerTest, UnreadableControlCenterSaysSo) {
    // Not running; running without an extras bar; an extras bar without a readable item list.
    run("system", "notify");
    system.running["com.apple.controlcenter"] = node("Control Center", "AXApplication");
    run("system", "notify");
    system.running["com.apple.controlcenter"]->elements["AXExtrasMenuBar"] = node("bar", "AXMenuBar");
    run("system", "notify");
    EXPECT_EQ(errors(), std::vector<std::string>(3, unreadableExtrasText));
    EXPECT_EQ(events(), std::vector<RecordedEvent>(3, beep));
}

}  // namespace
}  // namespace ostrelle::testing
