// What runs without the accessibility permission (opening apps, the Dock), what doesn't, and
// the failures on that road.
#include <gtest/gtest.h>

#include "action_runner_fixture.h"
#include "actions/action_catalog.h"

namespace ostrelle::testing {
namespace {

const std::string untrustedText = "action failed: Accessibility not granted, so keystrokes can't be sent";
const std::string missingAppText = "action failed: the app to open is missing";

ActionRef chosen(std::optional<URL> app) {
    ActionRef ref = actionRef("openapps", "app");
    ref.app = std::move(app);
    return ref;
}

std::optional<URL> file(const std::string& path) {
    return URL::fileURL(path, true);
}

std::vector<RecordedEvent> opened(const std::string& path) {
    return {recorded::OpenApplication{path}};
}

TEST_F(ActionRunnerTest, UntrustedOpensAppsAndTellsTheDockOrFailsWithTheReason) {
    system.trusted = false;
    apps.addBundle("/Applications", "Preview.app", "com.apple.Preview");
    apps.directories.insert("/Users/tester/Notes");
    const struct {
        const char* name;
        ActionRef action;
        std::vector<RecordedEvent> events;
        std::string error = {};  // empty: none
    } rows[] = {
        {"missionControl", actionRef("system", "mission"),
         opened("/System/Applications/Mission Control.app")},
        {"appGridOfAnUnknownVersion", actionRef("system", "grid"),
         opened("/System/Applications/Launchpad.app")},
        {"dock", actionRef("system", "expose"), {recorded::DockNotification{"com.apple.expose.front.awake"}}},
        {"chosenApp", chosen(file("/Applications/Preview.app")), opened("/Applications/Preview.app")},
        {"noAppChosen", chosen(std::nullopt), {beep}, missingAppText},
        {"chosenAppGone", chosen(file("/Applications/Deleted.app")), {beep}, missingAppText},
        {"chosenFolderIsNoApp", chosen(file("/Users/tester/Notes")), {beep}, missingAppText},
        {"chosenWebPage", chosen(URL::parse("https://example.com/Preview.app")), {beep}, missingAppText},
        {"unknownOption",
         actionRef("browsers", "teleport"),
         {beep},
         "action failed: unknown action browsers/teleport"},
    };
    std::vector<std::string> expectedErrors;
    for (const auto& row : rows) {
        system.clearRecorded();
        run(row.action);
        EXPECT_EQ(events(), row.events) << row.name;
        if (!row.error.empty()) expectedErrors.push_back(row.error);
    }
    EXPECT_EQ(errors(), expectedErrors);
    EXPECT_EQ(queue.pendingCount(), 0u);  // nothing is left to happen later
}

TEST_F(ActionRunnerTest, TheAppGridFollowsTheVersionTheRunnerWasToldAndAMissingDockSaysSo) {
    ActionRunner onTahoe(system, queue, ActionHost{nullptr, nullptr, 26});
    onTahoe.run(actionRef("system", "grid"));
    EXPECT_EQ(events(), opened("/System/Applications/Apps.app"));
    system.clearRecorded();
    system.dockAvailable = false;
    run("system", "expose");
    EXPECT_EQ(errors(),
              std::vector<std::string>{"action failed: CoreDockSendNotification is missing on this macOS"});
    EXPECT_EQ(events(), std::vector<RecordedEvent>{beep});
}

// Every option of the catalog, without the permission: only opening apps and the Dock get through.
TEST_F(ActionRunnerTest, WithoutPermissionOnlyOpeningAndTheDockWork) {
    system.trusted = false;
    system.setFrontmost("com.apple.Safari");
    apps.addBundle("/Applications", "Preview.app", "com.apple.Preview");
    std::size_t refused = 0;
    for (const AppActions& group : ActionCatalog::apps()) {
        for (const ActionOption& option : group.options) {
            system.clearRecorded();
            ActionRef ref = actionRef(group.id, option.id, KeyShortcut{0, EventFlag::command});
            ref.app = file("/Applications/Preview.app");
            run(ref);
            const ActionKind& kind = option.kind;
            const bool runs = kind.is<ActionKind::OpenApp>() || kind.is<ActionKind::OpenAppGrid>() ||
                              kind.is<ActionKind::ChooseApp>() || kind.is<ActionKind::DockNotification>();
            refused += runs ? 0 : 1;
            ASSERT_EQ(events().size(), 1u) << group.id << "/" << option.id;
            EXPECT_EQ(events()[0] == beep, !runs) << group.id << "/" << option.id;
        }
    }
    EXPECT_EQ(errors(), std::vector<std::string>(refused, untrustedText));
    EXPECT_EQ(queue.pendingCount(), 0u);
}

}  // namespace
}  // namespace ostrelle::testing
