#include "platform/linux/desktop_gesture_settings.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>

#include "testing/temporary_folder.h"

namespace ostrelle {
namespace {

using Variables = std::map<std::string, std::string, std::less<>>;

DesktopGestureSettings readWith(const Variables& variables) {
    return readDesktopGestureSettings([&](std::string_view name) -> std::optional<std::string> {
        const auto found = variables.find(name);
        return found == variables.end() ? std::nullopt : std::optional(found->second);
    });
}

TEST(DesktopGestureSettings, ReadsTheDesktopAndItsTapToClick) {
    testing::TemporaryFolder folder;
    const std::filesystem::path home = folder / "home";
    std::filesystem::create_directories(home / ".config");
    testing::writeText(folder / "kcminputrc", "[Libinput][1][2][Touchpad]\nTapToClick=true\n");
    testing::writeText(home / ".config" / "kcminputrc", "[Libinput][1][2][Touchpad]\nTapToClick=false\n");
    const struct {
        const char* name;
        Variables variables;
        LinuxDesktop desktop;
        bool tapToClick;
    } rows[] = {
        {"kcminputrc in XDG_CONFIG_HOME",
         {{"XDG_CURRENT_DESKTOP", "KDE"}, {"XDG_CONFIG_HOME", folder.path().string()}},
         LinuxDesktop::kde,
         true},
        {"a relative XDG_CONFIG_HOME does not count: ~/.config",
         {{"XDG_CURRENT_DESKTOP", "KDE"}, {"XDG_CONFIG_HOME", "config"}, {"HOME", home.string()}},
         LinuxDesktop::kde,
         false},
        {"no desktop reads nothing",
         {{"XDG_CONFIG_HOME", folder.path().string()}},
         LinuxDesktop::other,
         false},
        // The test process sees no GNOME schema, and the bus is not there: the defaults, at once.
        {"GNOME without its schema or bus",
         {{"XDG_CURRENT_DESKTOP", "GNOME"},
          {"DBUS_SESSION_BUS_ADDRESS", "unix:path=" + (folder / "bus").string()}},
         LinuxDesktop::gnome,
         false},
    };
    for (const auto& row : rows) {
        const DesktopGestureSettings settings = readWith(row.variables);
        EXPECT_EQ(settings.desktop, row.desktop) << row.name;
        EXPECT_EQ(settings.tapToClick, row.tapToClick) << row.name;
        EXPECT_EQ(settings.gnomeShellMajor, std::nullopt) << row.name;
    }
}

}  // namespace
}  // namespace ostrelle
