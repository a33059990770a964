#include "actions/installed_apps.h"

#include <gtest/gtest.h>

#include <memory>

#include "action_fakes.h"

namespace ostrelle {
namespace {

using testing::FakeAppFiles;

std::vector<std::string> paths(const std::vector<URL>& urls) {
    std::vector<std::string> result;
    for (const URL& url : urls) result.push_back(url.path());
    return result;
}

constexpr auto finder = "/System/Library/CoreServices/Finder.app";

class InstalledAppsScan : public ::testing::Test {
  protected:
    InstalledAppsScan() { addFinder(); }

    void addFinder() {
        files.directories.insert(finder);
        files.bundles[finder] = {"Finder.app", "com.apple.finder"};
    }

    FakeAppFiles files;
};

TEST(InstalledAppsFolders, UsualFoldersThenTheUsersOwn) {
    EXPECT_EQ(InstalledApps::folders("/home/ana"),
              (std::vector<std::string>{"/Applications", "/Applications/Utilities", "/System/Applications",
                                        "/System/Applications/Utilities", "/home/ana/Applications"}));
    EXPECT_EQ(InstalledApps::finder().absoluteString(), "file:///System/Library/CoreServices/Finder.app/");
}

TEST_F(InstalledAppsScan, KeepsOnlyAppDirectoriesAndAlwaysFinder) {
    files.addBundle("/Applications", "Utilities", std::nullopt);  // a folder without the extension
    files.addBundle("/Applications", "Maps.app", "com.example.maps");
    files.folders["/Applications"].push_back("/Applications/readme.txt");
    files.folders["/Applications"].push_back("/Applications/Broken.app");  // not a directory
    EXPECT_EQ(paths(InstalledApps::scan(files)),
              (std::vector<std::string>{finder, "/Applications/Maps.app"}));
}

TEST_F(InstalledAppsScan, FirstCopyOfABundleWins) {
    files.addBundle(files.home + "/Applications", "Editor.app", "com.example.editor");
    files.addBundle("/Applications", "Editor.app", "com.example.editor");
    files.addBundle("/System/Applications", "Editor Copy.app", "com.example.editor");
    EXPECT_EQ(paths(InstalledApps::scan(files)),
              (std::vector<std::string>{"/Applications/Editor.app", finder}));
}

TEST_F(InstalledAppsScan, BundlesWithoutIdentifierAreToldApartByPath) {
    files.addBundle("/Applications", "Tool.app", std::nullopt);
    files.addBundle("/Applications/Utilities", "Tool.app", std::nullopt);
    // An identifier that happens to equal another bundle's path is still a different key.
    files.addBundle("/System/Applications", "Other.app", "/Applications/Tool.app");
    EXPECT_EQ(paths(InstalledApps::scan(files)),
              (std::vector<std::string>{finder, "/System/Applications/Other.app", "/Applications/Tool.app",
                                        "/Applications/Utilities/Tool.app"}));
}

TEST_F(InstalledAppsScan, SortsNaturallyWithoutCaseAndStably) {
    files.addBundle("/Applications", "Tool 10.app", std::nullopt);
    files.addBundle("/Applications", "tool 2.app", std::nullopt);
    files.addBundle("/Applications", "Éditeur.app", std::nullopt);
    files.addBundle("/Applications", "zebra.app", std::nullopt);
    files.addBundle("/Applications", "Alpha.app", std::nullopt);
    // Two different bundles with the same shown name keep their scan order.
    files.addBundle("/Applications/Utilities", "Same.app", std::nullopt, "Twin");
    files.addBundle("/System/Applications", "Same.app", std::nullopt, "twin");
    EXPECT_EQ(paths(InstalledApps::scan(files)),
              (std::vector<std::string>{"/Applications/Alpha.app", "/Applications/Éditeur.app", finder,
                                        "/Applications/tool 2.app", "/Applications/Tool 10.app",
                                        "/Applications/Utilities/Same.app", "/System/Applications/Same.app",
                                        "/Applications/zebra.app"}));
}

TEST_F(InstalledAppsScan, UnreadableFoldersGiveNothingButFinder) {
    EXPECT_EQ(paths(InstalledApps::scan(files)), (std::vector<std::string>{finder}));
    files.directories.clear();  // not even Finder exists
    EXPECT_TRUE(InstalledApps::scan(files).empty());
}

TEST_F(InstalledAppsScan, URLsAreDirectoryFileURLs) {
    files.addBundle("/Applications", "My App.app", std::nullopt);
    const auto urls = InstalledApps::scan(files);
    ASSERT_EQ(urls.size(), 2u);
    EXPECT_EQ(urls[1].absoluteString(), "file:///Applications/My%20App.app/");
}

}  // namespace
}  // namespace ostrelle
