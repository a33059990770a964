#include "actions/action_catalog.h"

#include <gtest/gtest.h>

#include <memory>
#include <ostream>

#include "action_fakes.h"

namespace ostrelle {
namespace {

using testing::FakeAppFiles;
using testing::FakeKeyboardLayout;

ActionRef ref(std::string appID, std::string optionID) {
    return {std::move(appID), std::move(optionID), {}, {}};
}

URL appURL(const std::string& path) {
    return URL::fileURL(path, true);
}

TEST(ActionCatalogLookup, FindsGroupThenOption) {
    const auto entry = ActionCatalog::lookup(ref("system", "copy"));
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->app->id, "system");
    EXPECT_EQ(entry->option->label, "Copy");
    // The same option id resolves differently in different groups.
    EXPECT_EQ(ActionCatalog::lookup(ref("browsers", "first"))->option->kind,
              ActionKind::shortcut(18, EventFlag::command));
    EXPECT_EQ(ActionCatalog::lookup(ref("tabs", "first"))->option->kind, ActionKind::selectTab(false));
}

TEST(ActionCatalogLookup, MissesAreAbsentAndExact) {
    EXPECT_FALSE(ActionCatalog::lookup(ref("nowhere", "copy")));
    EXPECT_FALSE(ActionCatalog::lookup(ref("system", "nothing")));
    EXPECT_FALSE(ActionCatalog::lookup(ref("System", "copy")));
    EXPECT_FALSE(ActionCatalog::lookup(ref("system", "Copy")));
    EXPECT_FALSE(ActionCatalog::lookup(ref("system ", "copy")));
    EXPECT_FALSE(ActionCatalog::lookup(ref("", "")));
    EXPECT_FALSE(ActionCatalog::lookup(ref("tabs", "reopen")));
}

struct MigrationCase {
    const char* name;
    ActionRef from;
    std::optional<ActionRef> to;
};

// Test names show the row name rather than the bytes of the row.
void PrintTo(const MigrationCase& row, std::ostream* out) {
    *out << row.name;
}

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
                      MigrationCase{"resolvesAlready", ref("system", "copy"), ref("system", "copy")}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(ActionCatalogMigrationExtras, ResolvingReferenceKeepsItsExtrasAndOldOnesLoseThem) {
    ActionRef custom = ref("keyboard", "custom");
    custom.shortcut = KeyShortcut{40, EventFlag::command};
    EXPECT_EQ(ActionCatalog::migrated(custom), custom);

    ActionRef old = ref("safari", "close");
    old.shortcut = KeyShortcut{13, EventFlag::command};
    old.app = appURL("/Applications/Safari.app");
    EXPECT_EQ(ActionCatalog::migrated(old), ref("browsers", "close"));
}

TEST(ActionCatalogTexts, UnknownReferences) {
    EXPECT_EQ(ActionCatalog::summary(ref("nowhere", "x"), ActionHost{}), "Unknown action");
    EXPECT_EQ(ActionCatalog::pill(ref("system", "x"), ActionHost{}), "Unknown action");
}

TEST(ActionCatalogTexts, PlainOptionsShowTheirLabel) {
    EXPECT_EQ(ActionCatalog::summary(ref("system", "mission"), ActionHost{}), "Mission Control");
    EXPECT_EQ(ActionCatalog::pill(ref("browsers", "linktab"), ActionHost{}), "Open link in new tab");
    // Extras on an option that doesn't use them change nothing.
    ActionRef copy = ref("system", "copy");
    copy.shortcut = KeyShortcut{40, EventFlag::command};
    EXPECT_EQ(ActionCatalog::summary(copy, ActionHost{}), "Copy");
    EXPECT_EQ(ActionCatalog::pill(copy, ActionHost{}), "Copy");
}

TEST(ActionCatalogTexts, CustomShortcut) {
    auto layout = std::make_shared<FakeKeyboardLayout>(std::map<std::uint16_t, std::string>{{40, "k"}});
    const ActionHost host{layout.get(), nullptr, std::nullopt};
    ActionRef custom = ref("keyboard", "custom");
    EXPECT_EQ(ActionCatalog::summary(custom, host), "Custom shortcut");
    EXPECT_EQ(ActionCatalog::pill(custom, host), "Custom shortcut");
    custom.shortcut = KeyShortcut{40, EventFlag::shift | EventFlag::command};
    EXPECT_EQ(ActionCatalog::summary(custom, host), "Press ⇧⌘K");
    EXPECT_EQ(ActionCatalog::pill(custom, host), "⇧⌘K");
    custom.shortcut = KeyShortcut{110, EventFlag::command | EventFlag::control};
    EXPECT_EQ(ActionCatalog::pill(custom, host), "⌃⌘Key 110");
}

class ActionCatalogApps : public ::testing::Test {
  protected:
    ActionCatalogApps() {
        files_->addBundle("/Applications", "Preview.app", "com.example.preview");
        files_->addBundle("/Applications", "Notes.app", std::nullopt, "Notes");
        files_->addBundle("/Applications", "Tools", std::nullopt);              // a plain folder
        files_->folders["/Applications"].push_back("/Applications/Stray.app");  // a file, not a directory
    }

    ActionHost host() const { return {nullptr, files_.get(), std::nullopt}; }

    std::shared_ptr<FakeAppFiles> files_ = std::make_shared<FakeAppFiles>();
};

TEST_F(ActionCatalogApps, AppNameNeedsAnExistingAppDirectory) {
    EXPECT_EQ(ActionCatalog::appName(appURL("/Applications/Preview.app"), files_.get()), "Preview");
    EXPECT_EQ(ActionCatalog::appName(appURL("/Applications/Notes.app"), files_.get()),
              "Notes");  // extension already hidden
    EXPECT_EQ(ActionCatalog::appName(*URL::parse("file:///Applications/Preview.app"), files_.get()), "Preview");
    EXPECT_EQ(ActionCatalog::appName(*URL::parse("file://localhost/Applications/Preview.app/"), files_.get()), "Preview");
    EXPECT_FALSE(ActionCatalog::appName(appURL("/Applications/Tools"), files_.get()));
    EXPECT_FALSE(ActionCatalog::appName(appURL("/Applications/Stray.app"), files_.get()));
    EXPECT_FALSE(ActionCatalog::appName(appURL("/Applications/Gone.app"), files_.get()));
    EXPECT_FALSE(ActionCatalog::appName(*URL::parse("https://example.com/Preview.app"), files_.get()));
    EXPECT_FALSE(ActionCatalog::appName(appURL("/Applications/Preview.app"), nullptr));
}

TEST_F(ActionCatalogApps, ChosenAppTexts) {
    ActionRef open = ref("openapps", "app");
    EXPECT_EQ(ActionCatalog::summary(open, host()), "Open an app");
    EXPECT_EQ(ActionCatalog::pill(open, host()), "Open an app");
    open.app = appURL("/Applications/Preview.app");
    EXPECT_EQ(ActionCatalog::summary(open, host()), "Open Preview");
    EXPECT_EQ(ActionCatalog::pill(open, host()), "Preview");
    open.app = appURL("/Applications/Deleted.app");
    EXPECT_EQ(ActionCatalog::summary(open, host()), "Open an app");
    EXPECT_EQ(ActionCatalog::pill(open, host()), "App not found");
}

std::vector<std::string> shape(const std::vector<AppActions>& apps) {
    std::vector<std::string> result;
    for (const AppActions& app : apps) {
        for (const ActionOption& option : app.options) result.push_back(app.id + "/" + option.id);
    }
    return result;
}

using Shape = std::vector<std::string>;

TEST(ActionCatalogFilter, EmptyOrBlankQueryKeepsEverything) {
    EXPECT_EQ(ActionCatalog::filtered(""), ActionCatalog::apps());
    EXPECT_EQ(ActionCatalog::filtered(" \t "), ActionCatalog::apps());
}

TEST(ActionCatalogFilter, LabelsMatchWithoutCase) {
    const Shape zoom{"browsers/zoomin", "browsers/zoomout"};
    EXPECT_EQ(shape(ActionCatalog::filtered("zoom")), zoom);
    EXPECT_EQ(shape(ActionCatalog::filtered("ZOOM")), zoom);
    EXPECT_EQ(shape(ActionCatalog::filtered("  Zoom\t")), zoom);
    // A line end is not trimmed and matches nothing.
    EXPECT_TRUE(ActionCatalog::filtered("zoom\n").empty());
    EXPECT_TRUE(ActionCatalog::filtered("safari").empty());
}

TEST(ActionCatalogFilter, DiacriticsAreIgnoredEitherWay) {
    const Shape expose{"system/expose"};
    EXPECT_EQ(shape(ActionCatalog::filtered("expose")), expose);
    EXPECT_EQ(shape(ActionCatalog::filtered("EXPOSÉ")), expose);
    EXPECT_EQ(shape(ActionCatalog::filtered("Expose\u0301")), expose);
    EXPECT_EQ(shape(ActionCatalog::filtered("mäcös")), shape({ActionCatalog::apps()[3]}));
}

TEST(ActionCatalogFilter, GroupNameKeepsTheWholeGroup) {
    const auto result = ActionCatalog::filtered("tabbed");
    ASSERT_EQ(result.size(), 1u);
    EXPECT_EQ(result[0], ActionCatalog::apps()[1]);
}

TEST(ActionCatalogFilter, KeysMatchAndGroupOrderStays) {
    // "⌘T" is the keys text of new tab; "Open new tab" matches through its label too.
    EXPECT_EQ(shape(ActionCatalog::filtered("⇧⌘T")), (Shape{"browsers/reopen"}));
    EXPECT_EQ(shape(ActionCatalog::filtered("new tab")),
              (Shape{"browsers/newtab", "browsers/linktab", "tabs/newtab"}));
    EXPECT_EQ(shape(ActionCatalog::filtered("f11")), (Shape{"system/desktop"}));
}

TEST(ActionCatalogFilter, MatchingGroupKeepsOptionDataIntact) {
    const auto result = ActionCatalog::filtered("first tab");
    ASSERT_EQ(result.size(), 2u);
    EXPECT_EQ(result[0].name, "Browsers");
    EXPECT_EQ(result[0].symbol, "globe");
    EXPECT_EQ(result[1].options[0], ActionCatalog::apps()[1].options[2]);
}

}  // namespace
}  // namespace ostrelle
