#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <sstream>

#include "actions/action_catalog.h"
#include "actions/installed_apps.h"
#include "platform/linux/desktop_entry_launcher.h"
#include "platform/linux/epoll_main_queue.h"
#include "platform/linux/folder_watch.h"
#include "platform/linux/gio_app_files.h"
#include "support/log.h"
#include "testing/temporary_folder.h"

namespace ostrelle {
namespace {

namespace fs = std::filesystem;

// Waited for at most; only a launch that never happens reaches it.
constexpr double launchWaitLimit = 10.0;  // seconds

void writeEntry(const fs::path& file, const std::string& keys) {
    fs::create_directories(file.parent_path());
    testing::writeText(file, "[Desktop Entry]\nType=Application\nExec=true\n" + keys);
}

std::string relative(const std::string& path, const fs::path& root) {
    return fs::path(path).lexically_relative(root).string();
}

// GIO reads the XDG folders once per process, so what it finds in the folders built here is
// read in a child started afresh (gtest's threadsafe death test), with the variables set before
// GIO's first use. The child prints what it found and the parent compares.
TEST(GioAppFiles, ReadsTheXDGFoldersInPrecedenceAndScansThemAsTheDesktopShows) {
    const std::string style = GTEST_FLAG_GET(death_test_style);
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const testing::TemporaryFolder root;
    const fs::path user = root / "home/applications";
    const fs::path first = root / "first/applications";
    const fs::path second = root / "second/applications";
    writeEntry(user / "editor.desktop", "Name=My Editor\nIcon=accessories-text-editor\n");
    writeEntry(user / "removed.desktop", "Name=Removed\nHidden=true\n");
    writeEntry(first / "editor.desktop", "Name=Editor\n");
    writeEntry(first / "removed.desktop", "Name=Removed\n");
    writeEntry(first / "app10.desktop", "Name=App 10\nIcon=/opt/app/icon.png\n");
    writeEntry(first / "app2.desktop", "Name=app 2\n");
    writeEntry(first / "settings.desktop", "Name=Settings Panel\nNoDisplay=true\n");
    writeEntry(first / "kde.desktop", "Name=KDE Only\nOnlyShowIn=KDE;\n");
    writeEntry(first / "not-gnome.desktop", "Name=Not GNOME\nNotShowIn=GNOME;\n");
    writeEntry(first / "vendor/tool.desktop", "Name=Tool\n");
    writeEntry(first / "missing.desktop", "Name=Missing\nExec=/nonexistent/program\n");
    writeEntry(second / "app2.desktop", "Name=Also App 2\n");
    writeEntry(second / "viewer.desktop", "Name=Viewer\n");

    const auto childLists = [&] {
        ::setenv("XDG_DATA_HOME", (root / "home").c_str(), 1);
        ::setenv("XDG_DATA_DIRS", ((root / "first").string() + ":" + (root / "second").string()).c_str(), 1);
        ::setenv("XDG_CURRENT_DESKTOP", "GNOME", 1);
        const GioAppFiles files;
        std::ostringstream out;
        for (const DesktopEntry& entry : files.desktopEntries()) {
            out << entry.id << " " << relative(entry.path, root.path()) << " \"" << entry.name << "\" "
                << entry.icon << (entry.hidden ? " hidden" : "") << "\n";
        }
        out << "scan:";
        for (const URL& url : InstalledApps::scanDesktopEntries(files))
            out << " " << relative(url.path(), root.path());
        out << "\nremoved: "
            << files.desktopEntry((user / "removed.desktop").string()).value_or(DesktopEntry{}).hidden;
        out << "\nmissing: " << files.desktopEntry((first / "missing.desktop").string()).has_value();
        out << "\nnamed: "
            << *ActionCatalog::appName(URL::fileURL((second / "viewer.desktop").string(), false), &files);
        std::cerr << out.str() << std::flush;
        fs::remove_all(root.path());  // the child's own folder: it ends before its destructor runs
        ::_exit(0);
    };
    EXPECT_EXIT(childLists(), ::testing::ExitedWithCode(0),
                ::testing::Eq(
                    "editor.desktop home/applications/editor.desktop \"My Editor\" accessories-text-editor\n"
                    "app10.desktop first/applications/app10.desktop \"App 10\" /opt/app/icon.png\n"
                    "app2.desktop first/applications/app2.desktop \"app 2\" \n"
                    "kde.desktop first/applications/kde.desktop \"KDE Only\"  hidden\n"
                    "not-gnome.desktop first/applications/not-gnome.desktop \"Not GNOME\"  hidden\n"
                    "settings.desktop first/applications/settings.desktop \"Settings Panel\"  hidden\n"
                    "vendor-tool.desktop first/applications/vendor/tool.desktop \"Tool\" \n"
                    "viewer.desktop second/applications/viewer.desktop \"Viewer\" \n"
                    "scan: first/applications/app2.desktop first/applications/app10.desktop "
                    "home/applications/editor.desktop first/applications/vendor/tool.desktop "
                    "second/applications/viewer.desktop\n"
                    "removed: 1\n"
                    "missing: 0\n"
                    "named: Viewer"));
    GTEST_FLAG_SET(death_test_style, style);
}

TEST(DesktopEntryLauncher, StartsTheEntrysProgramWithoutWaitingAndLogsWhatCannotStart) {
    const testing::TemporaryFolder folder;
    const std::string path = folder.path().string();
    const fs::path marker = folder / "launched";
    writeEntry(folder / "marker.desktop", "Name=Marker\nExec=touch " + marker.string() + "\n");
    writeEntry(folder / "nowhere.desktop", "Name=Nowhere\nPath=" + path + "/gone\n");
    std::string logged;
    Log::setListener([&](Log::Level, std::string_view message) { (logged += message) += "\n"; });
    // Each row: the path opened and the start of the one line logged, if any.
    const std::pair<std::string, std::string> rows[] = {
        {path, ""},  // not a desktop entry: nothing to open
        {path + "/gone.desktop",
         "action failed: the application entry " + path + "/gone.desktop cannot be read\n"},
        {path + "/nowhere.desktop", "action failed: cannot start Nowhere (" + path + "/nowhere.desktop): "},
    };
    const DesktopEntryLauncher launcher;
    for (const auto& [opened, start] : rows) {
        logged.clear();
        launcher.open(opened);
        EXPECT_TRUE(logged.starts_with(start)) << opened << ": " << logged;
        EXPECT_EQ(std::count(logged.begin(), logged.end(), '\n'), start.empty() ? 0 : 1) << logged;
    }

    logged.clear();
    EpollMainQueue queue;
    const FolderWatch watch(queue, folder.path(), [&](const std::string& name) {
        if (name == marker.filename()) queue.quit();
    });
    queue.postAfter(launchWaitLimit, [&] { queue.quit(); });
    launcher.open(path + "/marker.desktop");
    queue.run();
    Log::setListener({});
    EXPECT_TRUE(fs::exists(marker));
    EXPECT_EQ(logged, "");
}

}  // namespace
}  // namespace ostrelle
