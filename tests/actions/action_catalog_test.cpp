// The rules of the action catalog: lookups, migration of old references, the texts shown for a
// reference, and search. The catalog's contents themselves are data, not tested here.
#include "actions/action_catalog.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "action_fakes.h"

namespace ostrelle {
namespace {

ActionRef ref(std::string appID, std::string optionID, std::optional<KeyShortcut> shortcut = std::nullopt,
              std::optional<std::string> app = std::nullopt) {
    return {std::move(appID), std::move(optionID), shortcut,
            app ? std::optional<URL>(URL::fileURL(*app, true)) : std::nullopt};
}

TEST(ActionCatalog, OptionIDsAreUniqueWithinTheirGroupAndResolveAndTheAppGridFollowsTheSystemVersion) {
    for (const AppActions& app : ActionCatalog::apps()) {
        std::set<std::string> ids;
        for (const ActionOption& option : app.options) {
            EXPECT_TRUE(ids.insert(option.id).second) << option.id;
            EXPECT_EQ(ActionCatalog::lookup(ref(app.id, option.id))->option, &option)
                << "every option resolves";
        }
    }
    const std::string apps = "/System/Applications/Apps.app",
                      launchpad = "/System/Applications/Launchpad.app";
    EXPECT_EQ(ActionCatalog::appGridPathFor(26), apps);
    EXPECT_EQ(ActionCatalog::appGridPathFor(27), apps);
    EXPECT_EQ(ActionCatalog::appGridPathFor(25), launchpad);
    EXPECT_EQ(ActionCatalog::appGridPathFor(std::nullopt), launchpad);
}

TEST(ActionCatalog, LookupFindsGroupThenOptionExactly) {
    const auto copy = ActionCatalog::lookup(ref("system", "copy"));
    ASSERT_TRUE(copy);
    EXPECT_EQ(copy->app->id, "system");
    EXPECT_EQ(copy->option->label, "Copy");
    // The same option id resolves differently in different groups.
    EXPECT_EQ(ActionCatalog::lookup(ref("browsers", "first"))->option->kind,
              ActionKind::shortcut(18, EventFlag::command));
    EXPECT_EQ(ActionCatalog::lookup(ref("tabs", "first"))->option->kind, ActionKind::selectTab(false));
    for (const ActionRef& miss :
         {ref("nowhere", "copy"), ref("system", "nothing"), ref("System", "copy"), ref("system", "Copy"),
          ref("system ", "copy"), ref("", ""), ref("tabs", "reopen")})
        EXPECT_FALSE(ActionCatalog::lookup(miss)) << miss.appID << "/" << miss.optionID;
}

struct MigrationCase {
    const char* name;
    ActionRef from;
    std::optional<ActionRef> to;

    friend void PrintTo(const MigrationCase& row, std::ostream* out) { *out << row.name; }
};

class ActionCatalogMigration : public ::testing::TestWithParam<MigrationCase> {};

TEST_P(ActionCatalogMigration, MapsOldReferences) {
    EXPECT_EQ(ActionCatalog::migrated(GetParam().from), GetParam().to);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ActionCatalogMigration,
    ::testing::Values(MigrationCase{"safariNext", ref("safari", "next"), ref("browsers", "right")},
                      MigrationCase{"chromePrev", ref("chrome", "prev"), ref("browsers", "left")},
                      MigrationCase{"chromeReopen", ref("chrome", "reopen"), ref("browsers", "reopen")},
                      MigrationCase{"safariNewtab", ref("safari", "newtab"), ref("browsers", "newtab")},
                      MigrationCase{"terminalPrev", ref("terminal", "prev"), ref("tabs", "left")},
                      MigrationCase{"finderClose", ref("finder", "close"), ref("tabs", "close")},
                      MigrationCase{"finderReopen", ref("finder", "reopen"), std::nullopt},
                      MigrationCase{"chromeZoom", ref("chrome", "zoom"), std::nullopt},
                      MigrationCase{"unknownGroup", ref("firefox", "next"), std::nullopt},
                      MigrationCase{"currentGroupOldOption", ref("browsers", "next"), std::nullopt},
                      MigrationCase{"resolvesAlreadyWithItsExtras",
                                    ref("keyboard", "custom", KeyShortcut{40, 0x100000}),
                                    ref("keyboard", "custom", KeyShortcut{40, 0x100000})},
                      MigrationCase{"oldOneLosesItsExtras",
                                    ref("safari", "close", KeyShortcut{13, 0}, "/Applications/S.app"),
                                    ref("browsers", "close")}),
    [](const auto& row) { return std::string(row.param.name); });

struct TextCase {
    const char* name;
    ActionRef action;
    const char* summary;
    const char* pill;

    friend void PrintTo(const TextCase& row, std::ostream* out) { *out << row.name; }
};

class ActionCatalogTexts : public ::testing::TestWithParam<TextCase> {};

TEST_P(ActionCatalogTexts, SummaryAndPill) {
    testing::FakeKeyboardLayout layout({{40, "k"}});
    testing::FakeAppFiles files;
    files.addBundle("/Applications", "Preview.app", "com.example.preview");
    const ActionHost host{&layout, &files, std::nullopt};
    EXPECT_EQ(ActionCatalog::summary(GetParam().action, host), GetParam().summary);
    EXPECT_EQ(ActionCatalog::pill(GetParam().action, host), GetParam().pill);
}

constexpr EventFlags shiftCommand = EventFlag::shift | EventFlag::command;

INSTANTIATE_TEST_SUITE_P(
    Cases, ActionCatalogTexts,
    ::testing::Values(
        TextCase{"unknownGroup", ref("nowhere", "x"), "Unknown action", "Unknown action"},
        TextCase{"plainOption", ref("system", "mission"), "Mission Control", "Mission Control"},
        TextCase{"unusedExtrasChangeNothing",
                 ref("system", "copy", KeyShortcut{40, shiftCommand}, "/A/B.app"), "Copy", "Copy"},
        TextCase{"customWithoutShortcut", ref("keyboard", "custom"), "Custom shortcut", "Custom shortcut"},
        TextCase{"customShortcut", ref("keyboard", "custom", KeyShortcut{40, shiftCommand}), "Press ⇧⌘K",
                 "⇧⌘K"},
        TextCase{"noAppChosen", ref("openapps", "app"), "Open an app", "Open an app"},
        TextCase{"chosenApp", ref("openapps", "app", std::nullopt, "/Applications/Preview.app"),
                 "Open Preview", "Preview"},
        TextCase{"chosenAppGone", ref("openapps", "app", std::nullopt, "/Applications/Deleted.app"),
                 "Open an app", "App not found"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(ActionCatalog, AppNameNeedsAnExistingAppDirectory) {
    testing::FakeAppFiles files;
    files.addBundle("/Applications", "Preview.app", "com.example.preview");
    files.addBundle("/Applications", "Notes.app", std::nullopt, "Notes");  // extension already hidden
    files.addBundle("/Applications", "Tools", std::nullopt);               // a plain folder
    files.folders["/Applications"].push_back("/Applications/Stray.app");   // a file, not a directory
    const auto name = [&](const char* url) { return ActionCatalog::appName(*URL::parse(url), &files); };
    EXPECT_EQ(name("file:///Applications/Preview.app/"), "Preview");
    EXPECT_EQ(name("file:///Applications/Notes.app/"), "Notes");
    EXPECT_EQ(name("file:///Applications/Preview.app"), "Preview");
    EXPECT_EQ(name("file://localhost/Applications/Preview.app/"), "Preview");
    for (const char* missing :
         {"file:///Applications/Tools/", "file:///Applications/Stray.app", "file:///Applications/Gone.app/",
          "https://example.com/Applications/Preview.app/"})
        EXPECT_FALSE(name(missing)) << missing;
    EXPECT_FALSE(ActionCatalog::appName(URL::fileURL("/Applications/Preview.app", true), nullptr));
}

struct FilterCase {
    const char* name;
    const char* query;
    std::vector<std::string> found;  // "group/option", or "group/*" for a whole group

    friend void PrintTo(const FilterCase& row, std::ostream* out) { *out << row.name; }
};

class ActionCatalogFilter : public ::testing::TestWithParam<FilterCase> {};

TEST_P(ActionCatalogFilter, FindsLabelsKeysAndGroupsInCatalogOrder) {
    std::vector<std::string> found;
    for (const AppActions& app : ActionCatalog::filtered(GetParam().query)) {
        const auto& whole = *std::find_if(ActionCatalog::apps().begin(), ActionCatalog::apps().end(),
                                          [&](const AppActions& a) { return a.id == app.id; });
        EXPECT_TRUE(app.name == whole.name && app.symbol == whole.symbol) << app.id;
        if (app == whole) found.push_back(app.id + "/*");
        for (const ActionOption& option : app.options) {
            // What is found is the catalog's own option, data and all.
            EXPECT_EQ(option, *ActionCatalog::lookup(ref(app.id, option.id))->option);
            if (app != whole) found.push_back(app.id + "/" + option.id);
        }
    }
    EXPECT_EQ(found, GetParam().found);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ActionCatalogFilter,
    ::testing::Values(
        FilterCase{
            "labelWithoutCaseSpacesAndTabsTrimmed", "  ZOOM\t", {"browsers/zoomin", "browsers/zoomout"}},
        FilterCase{"lineEndIsNotTrimmed", "zoom\n", {}}, FilterCase{"groupIdsAreNotSearched", "safari", {}},
        FilterCase{"diacriticsInTheLabel", "expose", {"system/expose"}},
        FilterCase{"combiningMark", "Expose\u0301", {"system/expose"}},
        FilterCase{"diacriticsInAGroupName", "mäcös", {"system/*"}},
        FilterCase{"groupNameKeepsTheWholeGroup", "tabbed", {"tabs/*"}},
        FilterCase{"keysText", "⇧⌘T", {"browsers/reopen"}},
        FilterCase{"keysWithoutCase", "f11", {"system/desktop"}},
        FilterCase{"labelsAcrossGroups", "new tab", {"browsers/newtab", "browsers/linktab", "tabs/newtab"}}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(ActionCatalogFilter, EmptyOrBlankQueryKeepsEverything) {
    EXPECT_EQ(ActionCatalog::filtered(""), ActionCatalog::apps());
    EXPECT_EQ(ActionCatalog::filtered(" \t "), ActionCatalog::apps());
}

}  // namespace
}  // namespace ostrelle
