// The actions that press other applications' user interface: the first or last tab of the
// front window, found breadth first within 300 elements, and the menu-bar extras.
#include <gtest/gtest.h>

#include "action_runner_fixture.h"

namespace ostrelle {
namespace {

using testing::actionRef;
using testing::ActionRunnerTest;
using testing::beep;

const std::string noTabGroupText = "go to first/last tab failed: no tab group found in the front window";
const std::string unreadableExtrasText = "action failed: Control Center's menu-bar items aren't readable";

RecordedEvent pressOf(std::string element) {
    return recorded::Press{std::move(element), "AXPress"};
}

// A tab group with the tabs listed under "AXTabs".
FakeElement::Ptr tabGroup(const std::string& name, const std::vector<std::string>& tabs) {
    auto group = FakeElement::make(name, "AXTabGroup");
    auto& list = group->lists["AXTabs"];
    for (const std::string& tab : tabs) list.push_back(FakeElement::make(tab, "AXRadioButton"));
    return group;
}

// A window whose tab group is the `position`-th element a breadth-first search meets: a chain
// of single children below the window (which is the first).
FakeElement::Ptr windowWithTabGroupAt(std::size_t position) {
    auto window = FakeElement::make("window", "AXWindow");
    FakeElement::Ptr parent = window;
    for (std::size_t i = 2; i < position; ++i)
        parent = parent->addChild(FakeElement::make("group", "AXGroup"));
    parent->addChild(tabGroup("tabs", {"first tab", "last tab"}));
    return window;
}

class ActionRunnerTabsTest : public ActionRunnerTest {
  protected:
    void expectFailure() {
        EXPECT_EQ(errors(), std::vector<std::string>{noTabGroupText});
        EXPECT_EQ(events(), std::vector<RecordedEvent>{beep});
    }
};

TEST_F(ActionRunnerTabsTest, PressesTheFirstOrLastTab) {
    auto window = FakeElement::make("window", "AXWindow");
    auto toolbar = window->addChild(FakeElement::make("toolbar", "AXToolbar"));
    toolbar->addChild(FakeElement::make("back", "AXButton"));
    window->addChild(tabGroup("tabs", {"one", "two", "three"}));
    system.setFrontmost("com.apple.finder", window);

    run("tabs", "first");
    run("tabs", "last");
    EXPECT_EQ(events(), (std::vector<RecordedEvent>{pressOf("one"), pressOf("three")}));
    EXPECT_TRUE(errors().empty());
}

TEST_F(ActionRunnerTabsTest, TheShallowestTabGroupWinsOverAnEarlierDeepOne) {
    // Breadth first: the web page's tab strip sits deep in the first branch, the window's own
    // tab bar one level down in the second.
    auto window = FakeElement::make("window", "AXWindow");
    auto page = window->addChild(FakeElement::make("page", "AXGroup"));
    page->addChild(FakeElement::make("frame", "AXGroup"))->addChild(tabGroup("page tabs", {"page tab"}));
    window->addChild(tabGroup("window tabs", {"window tab"}));
    system.setFrontmost("com.apple.Safari", window);
    run("tabs", "first");
    EXPECT_EQ(events(), std::vector<RecordedEvent>{pressOf("window tab")});
}

TEST_F(ActionRunnerTabsTest, TabsFallBackToChildrenWhenThereIsNoTabList) {
    auto group = FakeElement::make("tabs", "AXTabGroup");
    group->addChild(FakeElement::make("left", "AXRadioButton"));
    group->addChild(FakeElement::make("right", "AXRadioButton"));
    system.setFrontmost("com.apple.finder", group);
    run("tabs", "last");
    EXPECT_EQ(events(), std::vector<RecordedEvent>{pressOf("right")});
}

TEST_F(ActionRunnerTabsTest, AnEmptyTabListFailsEvenWithChildren) {
    auto group = tabGroup("tabs", {});
    group->addChild(FakeElement::make("scroll area", "AXScrollArea"));
    system.setFrontmost("com.apple.finder", group);
    run("tabs", "first");
    expectFailure();
}

TEST_F(ActionRunnerTabsTest, ATabGroupWithNoListFails) {
    system.setFrontmost("com.apple.finder", FakeElement::make("tabs", "AXTabGroup"));
    run("tabs", "last");
    expectFailure();
}

TEST_F(ActionRunnerTabsTest, NoAppInFrontFails) {
    run("tabs", "first");
    expectFailure();
}

TEST_F(ActionRunnerTabsTest, NoFocusedWindowFails) {
    system.setFrontmost("com.apple.finder");
    run("tabs", "first");
    expectFailure();
}

TEST_F(ActionRunnerTabsTest, NoTabGroupInTheWindowFails) {
    auto window = FakeElement::make("window", "AXWindow");
    window->addChild(FakeElement::make("text", "AXTextArea"));
    window->addChild(FakeElement::make("no role"));
    system.setFrontmost("com.apple.TextEdit", window);
    run("tabs", "last");
    expectFailure();
}

TEST_F(ActionRunnerTabsTest, TheThreeHundredthElementIsStillExamined) {
    system.setFrontmost("com.apple.finder", windowWithTabGroupAt(300));
    run("tabs", "last");
    EXPECT_EQ(events(), std::vector<RecordedEvent>{pressOf("last tab")});
    EXPECT_TRUE(errors().empty());
}

TEST_F(ActionRunnerTabsTest, TheThreeHundredAndFirstIsNot) {
    system.setFrontmost("com.apple.finder", windowWithTabGroupAt(301));
    run("tabs", "last");
    expectFailure();
}

// A window with `leaves` childless elements beside the tab group's parent, which comes first:
// window, parent, the leaves, then the tab group.
FakeElement::Ptr wideWindow(int leaves) {
    auto window = FakeElement::make("window", "AXWindow");
    auto holder = window->addChild(FakeElement::make("holder", "AXGroup"));
    for (int i = 0; i < leaves; ++i) window->addChild(FakeElement::make("leaf", "AXStaticText"));
    holder->addChild(tabGroup("tabs", {"tab"}));
    return window;
}

TEST_F(ActionRunnerTabsTest, TheCapCountsElementsAcrossBranches) {
    system.setFrontmost("com.apple.finder", wideWindow(297));  // the group is element 300
    run("tabs", "first");
    EXPECT_EQ(events(), std::vector<RecordedEvent>{pressOf("tab")});

    system.clearRecorded();
    system.setFrontmost("com.apple.finder", wideWindow(298));  // and here 301
    run("tabs", "first");
    expectFailure();
}

TEST_F(ActionRunnerTest, MenuExtraPressesTheFirstPresentIdentifier) {
    system.setControlCenterExtras({"com.apple.menuextra.battery", "com.apple.menuextra.clock"});
    run("system", "notify");
    EXPECT_EQ(events(), std::vector<RecordedEvent>{pressOf("com.apple.menuextra.clock")});
    EXPECT_TRUE(errors().empty());
}

TEST_F(ActionRunnerTest, FocusPrefersFocusOverControlCenterWhateverTheMenuBarOrder) {
    system.setControlCenterExtras({"com.apple.menuextra.controlcenter", "com.apple.menuextra.focusmode"});
    run("system", "focus");
    EXPECT_EQ(events(), std::vector<RecordedEvent>{pressOf("com.apple.menuextra.focusmode")});
}

TEST_F(ActionRunnerTest, FocusFallsBackToControlCenter) {
    system.setControlCenterExtras({"com.apple.menuextra.clock", "com.apple.menuextra.controlcenter"});
    run("system", "focus");
    EXPECT_EQ(events(), std::vector<RecordedEvent>{pressOf("com.apple.menuextra.controlcenter")});
}

TEST_F(ActionRunnerTest, NoneOfTheExtrasPresentListsThemAll) {
    system.setControlCenterExtras({"com.apple.menuextra.clock"});
    run("system", "focus");
    EXPECT_EQ(errors(), std::vector<std::string>{"action failed: none of com.apple.menuextra.focusmode, "
                                                 "com.apple.menuextra.controlcenter is in the menu bar"});
    EXPECT_EQ(events(), std::vector<RecordedEvent>{beep});
}

TEST_F(ActionRunnerTest, OfTwoExtrasWithOneIdentifierTheFirstIsPressed) {
    system.setControlCenterExtras({});
    auto& items = system.running["com.apple.controlcenter"]->elements["AXExtrasMenuBar"]->lists["AXChildren"];
    for (const char* name : {"unnamed", "first clock", "second clock"}) {
        auto item = FakeElement::make(name, "AXMenuBarItem");
        if (std::string(name) != "unnamed") item->strings["AXIdentifier"] = "com.apple.menuextra.clock";
        items.push_back(item);
    }
    run("system", "notify");
    EXPECT_EQ(events(), std::vector<RecordedEvent>{pressOf("first clock")});
}

TEST_F(ActionRunnerTest, UnreadableControlCenterSaysSo) {
    // Not running; running without an extras bar; an extras bar without a readable item list.
    run("system", "notify");
    system.running["com.apple.controlcenter"] = FakeElement::make("Control Center", "AXApplication");
    run("system", "notify");
    system.running["com.apple.controlcenter"]->elements["AXExtrasMenuBar"] =
        FakeElement::make("bar", "AXMenuBar");
    run("system", "notify");
    EXPECT_EQ(errors(), std::vector<std::string>(3, unreadableExtrasText));
    EXPECT_EQ(events(), std::vector<RecordedEvent>(3, beep));
}

}  // namespace
}  // namespace ostrelle
