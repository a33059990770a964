// What runs without the accessibility permission (opening apps, the Dock), what doesn't, and
// the failures on that road.
#include <gtest/gtest.h>

#include "action_runner_fixture.h"
#include "actions/action_catalog.h"

namespace ostrelle {
namespace {

using testing::actionRef;
using testing::ActionRunnerTest;
using testing::beep;

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

struct UntrustedCase {
    const char* name;
    ActionRef action;
    std::vector<RecordedEvent> events;
    std::string error = {};  // empty: none

    friend void PrintTo(const UntrustedCase& row, std::ostream* out) { *out << row.name; }
};

class ActionRunnerUntrusted : public ActionRunnerTest, public ::testing::WithParamInterface<UntrustedCase> {};

TEST_P(ActionRunnerUntrusted, OpensAppsAndTellsTheDockOrFailsWithTheReason) {
    system.trusted = false;
    apps.addBundle("/Applications", "Preview.app", "com.apple.Preview");
    apps.directories.insert("/Users/tester/Notes");
    run(GetParam().action);
    EXPECT_EQ(events(), GetParam().events);
    EXPECT_EQ(errors(),
              GetParam().error.empty() ? std::vector<std::string>{} : std::vector{GetParam().error});
    EXPECT_EQ(queue.pendingCount(), 0u);  // nothing is left to happen later
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ActionRunnerUntrusted,
    ::testing::Values(
        UntrustedCase{"missionControl", actionRef("system", "mission"),
                      opened("/System/Applications/Mission Control.app")},
        UntrustedCase{"appGridOfAnUnknownVersion", actionRef("system", "grid"),
                      opened("/System/Applications/Launchpad.app")},
        UntrustedCase{"dock",
                      actionRef("system", "expose"),
                      {recorded::DockNotification{"com.apple.expose.front.awake"}}},
        UntrustedCase{"chosenApp", chosen(file("/Applications/Preview.app")),
                      opened("/Applications/Preview.app")},
        UntrustedCase{"noAppChosen", chosen(std::nullopt), {beep}, missingAppText},
        UntrustedCase{"chosenAppGone", chosen(file("/Applications/Deleted.app")), {beep}, missingAppText},
        UntrustedCase{"chosenFolderIsNoApp", chosen(file("/Users/tester/Notes")), {beep}, missingAppText},
        UntrustedCase{
            "chosenWebPage", chosen(URL::parse("https://example.com/Preview.app")), {beep}, missingAppText},
        UntrustedCase{"unknownOption",
                      actionRef("browsers", "teleport"),
                      {beep},
                      "action failed: unknown action browsers/teleport"},
        UntrustedCase{"unknownNothing", actionRef("", ""), {beep}, "action failed: unknown action /"}),
    [](const auto& row) { return std::string(row.param.name); });

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
    for (const AppActions& group : ActionCatalog::apps()) {
        for (const ActionOption& option : group.options) {
            SCOPED_TRACE(group.id + "/" + option.id);
            system.clearRecorded();
            const std::size_t errorsBefore = errors().size();
            ActionRef ref = actionRef(group.id, option.id, KeyShortcut{0, EventFlag::command});
            ref.app = file("/Applications/Preview.app");
            run(ref);
            const ActionKind& kind = option.kind;
            ASSERT_EQ(events().size(), 1u);
            if (kind.is<ActionKind::OpenApp>() || kind.is<ActionKind::OpenAppGrid>() ||
                kind.is<ActionKind::ChooseApp>()) {
                EXPECT_TRUE(std::holds_alternative<recorded::OpenApplication>(events()[0]));
            } else if (kind.is<ActionKind::DockNotification>()) {
                EXPECT_TRUE(std::holds_alternative<recorded::DockNotification>(events()[0]));
            } else {
                EXPECT_EQ(events()[0], beep);
                ASSERT_EQ(errors().size(), errorsBefore + 1);
                EXPECT_EQ(errors().back(), untrustedText);
                continue;
            }
            EXPECT_EQ(errors().size(), errorsBefore);
        }
    }
    EXPECT_EQ(queue.pendingCount(), 0u);
}

}  // namespace
}  // namespace ostrelle
