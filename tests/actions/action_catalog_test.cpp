// The rules of the action catalog: lookups, migration of old references, the texts shown for a
// reference, and search. The catalog's contents themselves are data, not tested here.
#include "actions/action_catalog.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "action_fakes.h"

namespace ostrelle {
namespace {

ActionRef ref(std::string appID, std::string optionID, std::optional<KeyShortcut> shortcut = std::nullopt,
              std::optional<std::string> app = std::nullopt) {
    return {std::move(appID), std::move(optionID), shortcut,
            app ? std::optional<URL>(URL::fileURL(*app, true)) : std::nullopt};
}

TEST(ActionCatalog, TheAppGridFollowsTheSystemVersion) {
    const std::string apps = "/System/Applications/Apps.app",
                      launchpad = "/System/Applications/Launchpad.app";
    EXPECT_EQ(ActionCatalog::appGridPathFor(26), apps);
    EXPECT_EQ(ActionCatalog::appGridPathFor(25), launchpad);
}

TEST(ActionCatalog, LookupFindsGroupThenOptionExactly) {
    EXPECT_EQ(ActionCatalog::lookup(ref("system", "copy"))->option->label, "Copy");
    // The same option id resolves differently in different groups.
    EXPECT_EQ(ActionCatalog::lookup(ref("browsers", "first"))->option->kind,
              ActionKind::shortcut(18, EventFlag::command));
    EXPECT_EQ(ActionCatalog::lookup(ref("tabs", "first"))->option->kind, ActionKind::selectTab(false));
    for (const ActionRef& miss :
         {ref("nowhere", "copy"), ref("system", "nothing"), ref("System", "copy"), ref("system", "Copy"),
          ref("system ", "copy"), ref("", ""), ref("tabs", "reopen")})
        EXPECT_FALSE(ActionCatalog::lookup(miss)) << miss.appID << "/" << miss.optionID;
}

TEST(ActionCatalog, MigratedMapsOldReferences) {
    const struct {
        const char* name;
        ActionRef from;
        std::optional<ActionRef> to;
    } rows[] = {
        {"safariNext", ref("safari", "next"), ref("browsers", "right")},
        {"chromeReopen", ref("chrome", "reopen"), ref("browsers", "reopen")},
        {"terminalPrev", ref("terminal", "prev"), ref("tabs", "left")},
        {"finderReopen", ref("finder", "reopen"), std::nullopt},
        {"chromeZoom", ref("chrome", "zoom"), std::nullopt},
        {"unknownGroup", ref("firefox", "next"), std::nullopt},
        {"currentGroupOldOption", ref("browsers", "next"), std::nullopt},
        {"resolvesAlreadyWithItsExtras", ref("keyboard", "custom", KeyShortcut{40, 0x100000}),
         ref("keyboard", "custom", KeyShortcut{40, 0x100000})},
        {"oldOneLosesItsExtras", ref("safari", "close", KeyShortcut{13, 0}, "/Applications/S.app"),
         ref("browsers", "close")},
    };
    for (const auto& row : rows) EXPECT_EQ(ActionCatalog::migrated(row.from), row.to) << row.name;
}

constexpr EventFlags shiftCommand = EventFlag::shift | EventFlag::command;

TEST(ActionCatalog, SummaryAndPill) {
    testing::FakeKeyboardLayout layout({{40, "k"}});
    testing::FakeAppFiles files;
    files.addBundle("/Applications", "Preview.app", "com.example.preview");
    const ActionHost host{&layout, &files, std::nullopt};
    const struct {
        const char* name;
        ActionRef action;
        const char* summary;
        const char* pill;
    } rows[] = {
        {"unknownGroup", ref("nowhere", "x"), "Unknown action", "Unknown action"},
        {"unusedExtrasChangeNothing", ref("system", "copy", KeyShortcut{40, shiftCommand}, "/A/B.app"),
         "Copy", "Copy"},
        {"customWithoutShortcut", ref("keyboard", "custom"), "Custom shortcut", "Custom shortcut"},
        {"customShortcut", ref("keyboard", "custom", KeyShortcut{40, shiftCommand}), "Press ⇧⌘K", "⇧⌘K"},
        {"noAppChosen", ref("openapps", "app"), "Open an app", "Open an app"},
        {"chosenApp", ref("openapps", "app", std::nullopt, "/Applications/Preview.app"), "Open Preview",
         "Preview"},
        {"chosenAppGone", ref("openapps", "app", std::nullopt, "/Applications/Deleted.app"), "Open an app",
         "App not found"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(ActionCatalog::summary(row.action, host), row.summary) << row.name;
        EXPECT_EQ(ActionCatalog::pill(row.action, host), row.pill) << row.name;
    }
}

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

TEST(ActionCatalog, AppNameOfADesktopEntryIsTheEntrysName) {
    testing::FakeAppFiles files;
    files.entries = {{"editor.desktop", "/usr/share/applications/editor.desktop", "Text Editor", "", false},
                     {"panel.desktop", "/usr/share/applications/panel.desktop", "Panel", "", true}};
    files.addBundle("/usr/share/applications", "folder.desktop", std::nullopt);  // a directory, no entry
    const auto name = [&](const char* url) { return ActionCatalog::appName(*URL::parse(url), &files); };
    EXPECT_EQ(name("file:///usr/share/applications/editor.desktop"), "Text Editor");
    EXPECT_EQ(name("file:///usr/share/applications/panel.desktop"),
              "Panel");  // still bound, though not listed
    for (const char* missing :
         {"file:///usr/share/applications/gone.desktop", "file:///usr/share/applications/folder.desktop/",
          "file:///usr/share/applications/editor.desktop.app/"})
        EXPECT_FALSE(name(missing)) << missing;
}

// Each row: what is found, as "group/option", or "group/*" for a whole group, in catalog order.
TEST(ActionCatalogFilter, FindsLabelsKeysAndGroupsInCatalogOrder) {
    const std::pair<const char*, std::vector<std::string>> rows[] = {
        {"  ZOOM\t", {"browsers/zoomin", "browsers/zoomout"}},  // case, spaces and tabs trimmed
        {"zoom\n", {}},                                         // a line end is not trimmed
        {"safari", {}},                                         // group ids are not searched
        {"expose", {"system/expose"}},                          // diacritics in the label
        {"Expose\u0301", {"system/expose"}},                    // a combining mark
        {"mäcös", {"system/*"}},                                // diacritics in a group name
        {"⇧⌘T", {"browsers/reopen"}},
        {"f11", {"system/desktop"}},
        {"new tab", {"browsers/newtab", "browsers/linktab", "tabs/newtab"}},
    };
    for (const auto& [query, expected] : rows) {
        std::vector<std::string> found;
        for (const AppActions& app : ActionCatalog::filtered(query)) {
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
        EXPECT_EQ(found, expected) << query;
    }
}

TEST(ActionCatalogFilter, EmptyOrBlankQueryKeepsEverything) {
    EXPECT_EQ(ActionCatalog::filtered(""), ActionCatalog::apps());
    EXPECT_EQ(ActionCatalog::filtered(" \t "), ActionCatalog::apps());
}

}  // namespace
}  // namespace ostrelle
