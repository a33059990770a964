// What runs without the accessibility permission (opening apps, the Dock), what doesn't, and
// the failures on that road.
#include <gtest/gtest.h>

#include <memory>

#include "action_fakes.h"
#include "action_runner_fixture.h"
#include "actions/action_catalog.h"

namespace ostrelle {
namespace {

using testing::actionRef;
using testing::ActionRunnerTest;
using testing::beep;
using testing::FakeAppFiles;

const std::string untrustedText = "action failed: Accessibility not granted, so keystrokes can't be sent";
const std::string missingAppText = "action failed: the app to open is missing";

// Applications on a made-up disk, for the "open an app" action.
class ActionRunnerOpenTest : public ActionRunnerTest {
  protected:
    ActionRunnerOpenTest() {
        apps.addBundle("/Applications", "Preview.app", "com.apple.Preview");
        apps.directories.insert("/Users/tester/Notes");
    }

    static ActionRef chosen(const std::string& path) {
        ActionRef ref = actionRef("openapps", "app");
        ref.app = URL::fileURL(path, true);
        return ref;
    }
};

TEST_F(ActionRunnerTest, UnknownReferenceNamesGroupAndOption) {
    run("browsers", "teleport");
    EXPECT_EQ(errors(), std::vector<std::string>{"action failed: unknown action browsers/teleport"});
    EXPECT_EQ(events(), std::vector<RecordedEvent>{beep});

    system.clearRecorded();
    run("", "");
    EXPECT_EQ(errors().back(), "action failed: unknown action /");
    EXPECT_EQ(events(), std::vector<RecordedEvent>{beep});
}

TEST_F(ActionRunnerTest, OpenAppOpensItsPathWithoutAnyCheck) {
    system.trusted = false;
    run("system", "mission");
    run("system", "screensaver");
    run("system", "grid");
    // The app grid was renamed in macOS 26: the runner asks the version it was told.
    ActionRunner onTahoe(system, queue, ActionHost{nullptr, nullptr, 26});
    onTahoe.run(actionRef("system", "grid"));
    const std::vector<RecordedEvent> expected{
        recorded::OpenApplication{"/System/Applications/Mission Control.app"},
        recorded::OpenApplication{"/System/Library/CoreServices/ScreenSaverEngine.app"},
        recorded::OpenApplication{"/System/Applications/Launchpad.app"},
        recorded::OpenApplication{"/System/Applications/Apps.app"}};
    EXPECT_EQ(events(), expected);
    EXPECT_TRUE(errors().empty());
}

TEST_F(ActionRunnerTest, DockNotificationGoesThroughTheDockEntryPoint) {
    system.trusted = false;
    run("system", "expose");
    EXPECT_EQ(events(),
              std::vector<RecordedEvent>{recorded::DockNotification{"com.apple.expose.front.awake"}});
    EXPECT_TRUE(errors().empty());
}

TEST_F(ActionRunnerTest, DockNotificationWithoutTheEntryPointSaysSo) {
    system.dockAvailable = false;
    run("system", "expose");
    EXPECT_EQ(errors(),
              std::vector<std::string>{"action failed: CoreDockSendNotification is missing on this macOS"});
    EXPECT_EQ(events(), std::vector<RecordedEvent>{beep});
}

TEST_F(ActionRunnerOpenTest, ChosenAppOpensByItsPath) {
    system.trusted = false;
    run(chosen("/Applications/Preview.app"));
    EXPECT_EQ(events(), std::vector<RecordedEvent>{recorded::OpenApplication{"/Applications/Preview.app"}});
    EXPECT_TRUE(errors().empty());
}

TEST_F(ActionRunnerOpenTest, ChosenAppThatIsGoneOrNoAppIsMissing) {
    std::vector<ActionRef> refs{actionRef("openapps", "app"), chosen("/Applications/Deleted.app"),
                                chosen("/Users/tester/Notes")};
    ActionRef webPage = actionRef("openapps", "app");
    webPage.app = URL::parse("https://example.com/Preview.app");
    refs.push_back(webPage);
    for (const ActionRef& ref : refs) run(ref);
    EXPECT_EQ(errors(), std::vector<std::string>(4, missingAppText));
    EXPECT_EQ(events(), std::vector<RecordedEvent>(4, beep));
}

// Every option of the catalog, without the permission: only opening apps and the Dock get through.
TEST_F(ActionRunnerOpenTest, WithoutPermissionOnlyOpeningAndTheDockWork) {
    system.trusted = false;
    system.setFrontmost("com.apple.Safari");
    for (const AppActions& group : ActionCatalog::apps()) {
        for (const ActionOption& option : group.options) {
            SCOPED_TRACE(group.id + "/" + option.id);
            system.clearRecorded();
            const std::size_t errorsBefore = errors().size();
            ActionRef ref = actionRef(group.id, option.id, KeyShortcut{0, EventFlag::command});
            ref.app = URL::fileURL("/Applications/Preview.app", true);
            run(ref);
            const ActionKind& kind = option.kind;
            if (kind.is<ActionKind::OpenApp>() || kind.is<ActionKind::OpenAppGrid>() || kind.is<ActionKind::ChooseApp>()) {
                ASSERT_EQ(events().size(), 1u);
                EXPECT_TRUE(std::holds_alternative<recorded::OpenApplication>(events()[0]));
                EXPECT_EQ(errors().size(), errorsBefore);
            } else if (kind.is<ActionKind::DockNotification>()) {
                ASSERT_EQ(events().size(), 1u);
                EXPECT_TRUE(std::holds_alternative<recorded::DockNotification>(events()[0]));
                EXPECT_EQ(errors().size(), errorsBefore);
            } else {
                EXPECT_EQ(events(), std::vector<RecordedEvent>{beep});
                ASSERT_EQ(errors().size(), errorsBefore + 1);
                EXPECT_EQ(errors().back(), untrustedText);
            }
        }
    }
    EXPECT_EQ(queue.pendingCount(), 0u);
}

TEST_F(ActionRunnerTest, PermissionIsCheckedBeforeAnythingIsRead) {
    system.trusted = false;
    system.pasteboardItems = {DryRunSystemPort::plainText("mine")};
    run("browsers", "duplicate");
    // Not even the pasteboard was saved, and nothing is left to happen later.
    EXPECT_EQ(events(), std::vector<RecordedEvent>{beep});
    EXPECT_EQ(queue.pendingCount(), 0u);
}

}  // namespace
}  // namespace ostrelle
