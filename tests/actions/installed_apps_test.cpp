#include "actions/installed_apps.h"

#include <gtest/gtest.h>

#include "action_fakes.h"

namespace ostrelle {
namespace {

constexpr auto finder = "/System/Library/CoreServices/Finder.app";

class InstalledAppsScan : public ::testing::Test {
  protected:
    InstalledAppsScan() {
        files.directories.insert(finder);
        files.bundles[finder] = {"Finder.app", "com.apple.finder"};
    }

    std::vector<std::string> scannedPaths() const {
        std::vector<std::string> result;
        for (const URL& url : InstalledApps::scan(files)) result.push_back(url.path());
        return result;
    }

    testing::FakeAppFiles files;
};

TEST_F(InstalledAppsScan, KeepsOnlyAppDirectoriesAsDirectoryURLsAndAlwaysFinder) {
    EXPECT_EQ(scannedPaths(), std::vector<std::string>{finder});
    files.addBundle("/Applications", "Utilities", std::nullopt);  // a folder without the extension
    files.addBundle("/Applications", "My App.app", "com.example.maps");
    files.folders["/Applications"].push_back("/Applications/readme.txt");
    files.folders["/Applications"].push_back("/Applications/Broken.app");  // not a directory
    EXPECT_EQ(scannedPaths(), (std::vector<std::string>{finder, "/Applications/My App.app"}));
    EXPECT_EQ(InstalledApps::scan(files)[1].absoluteString(), "file:///Applications/My%20App.app/");
    files.directories.clear();  // not even Finder exists
    EXPECT_TRUE(InstalledApps::scan(files).empty());
}

TEST_F(InstalledAppsScan, TheFirstCopyOfABundleWinsAndThoseWithoutIdentifierAreToldApartByPath) {
    files.addBundle(files.home + "/Applications", "Editor.app", "com.example.editor");
    files.addBundle("/Applications", "Editor.app", "com.example.editor");
    files.addBundle("/System/Applications", "Editor Copy.app", "com.example.editor");
    files.addBundle("/Applications", "Tool.app", std::nullopt);
    files.addBundle("/Applications/Utilities", "Tool.app", std::nullopt);
    // An identifier that happens to equal another bundle's path is still a different key.
    files.addBundle("/System/Applications", "Other.app", "/Applications/Tool.app");
    EXPECT_EQ(scannedPaths(),
              (std::vector<std::string>{"/Applications/Editor.app", finder, "/System/Applications/Other.app",
                                        "/Applications/Tool.app", "/Applications/Utilities/Tool.app"}));
}

TEST_F(InstalledAppsScan, SortsNaturallyWithoutCaseAndStably) {
    for (const char* name : {"Tool 10.app", "tool 2.app", "Éditeur.app", "zebra.app", "Alpha.app"})
        files.addBundle("/Applications", name, std::nullopt);
    // Two different bundles with the same shown name keep their scan order.
    files.addBundle("/Applications/Utilities", "Same.app", std::nullopt, "Twin");
    files.addBundle("/System/Applications", "Same.app", std::nullopt, "twin");
    EXPECT_EQ(scannedPaths(),
              (std::vector<std::string>{"/Applications/Alpha.app", "/Applications/Éditeur.app", finder,
                                        "/Applications/tool 2.app", "/Applications/Tool 10.app",
                                        "/Applications/Utilities/Same.app", "/System/Applications/Same.app",
                                        "/Applications/zebra.app"}));
}

TEST(InstalledDesktopEntries, FirstOfAnIdWinsHiddenOnesMaskAndNamesSortNaturally) {
    constexpr auto user = "/home/tester/.local/share/applications/";
    constexpr auto system = "/usr/share/applications/";
    const auto entry = [](std::string folder, std::string id, std::string name, bool hidden = false) {
        return DesktopEntry{id, folder + id, std::move(name), "", hidden};
    };
    testing::FakeAppFiles files;
    files.entries = {
        entry(user, "editor.desktop", "My Editor"),
        entry(user, "removed.desktop", "Removed", true),  // the user's way of hiding a system entry
        entry(system, "App 10.desktop", "App 10"),
        entry(system, "editor.desktop", "Editor"),
        entry(system, "removed.desktop", "Removed"),
        entry(system, "settings-panel.desktop", "Panel", true),  // NoDisplay, or not on this desktop
        entry(system, "app2.desktop", "app 2"),
        entry(system, "twin-b.desktop", "Twin"),
        entry(system, "twin-a.desktop", "twin"),
    };
    std::vector<std::string> urls;
    for (const URL& url : InstalledApps::scanDesktopEntries(files)) urls.push_back(url.absoluteString());
    EXPECT_EQ(urls, (std::vector<std::string>{
                        "file:///usr/share/applications/app2.desktop",
                        "file:///usr/share/applications/App%2010.desktop",
                        "file:///home/tester/.local/share/applications/editor.desktop",
                        "file:///usr/share/applications/twin-b.desktop",
                        "file:///usr/share/applications/twin-a.desktop",
                    }));
}

}  // namespace
}  // namespace ostrelle
