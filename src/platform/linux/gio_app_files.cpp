#include "platform/linux/gio_app_files.h"

#include <gio/gdesktopappinfo.h>
#include <gio/gio.h>

#include <algorithm>
#include <filesystem>

#include "platform/linux/gio_handles.h"

namespace ostrelle {
namespace {

constexpr auto applicationsFolder = "applications";

// GDesktopAppInfo implements GAppInfo: the same instance, seen through its interface.
GAppInfo* appInfo(GDesktopAppInfo* info) {
    return reinterpret_cast<GAppInfo*>(info);
}

DesktopEntry entryOf(GDesktopAppInfo* info) {
    GAppInfo* app = appInfo(info);
    DesktopEntry entry;
    entry.path = gio::text(g_desktop_app_info_get_filename(info));
    // An entry read from a file outside the data folders has no id of its own.
    const char* id = g_app_info_get_id(app);
    entry.id = id ? id : std::filesystem::path(entry.path).filename().string();
    entry.name = gio::text(g_app_info_get_display_name(app));
    if (GIcon* icon = g_app_info_get_icon(app))
        entry.icon = gio::text(gio::StringPtr(g_icon_to_string(icon)).get());
    entry.hidden = g_desktop_app_info_get_nodisplay(info) || g_desktop_app_info_get_is_hidden(info) ||
                   !g_desktop_app_info_get_show_in(info, nullptr);
    return entry;
}

// The applications folders of the XDG data folders, the user's first: GIO's own precedence.
// Written as GIO writes the paths of their entries, so that one is a prefix of the other.
std::vector<std::string> applicationFolders() {
    const auto folder = [](const char* dataFolder) {
        return (std::filesystem::path(gio::text(dataFolder)) / applicationsFolder)
                   .lexically_normal()
                   .string() +
               "/";
    };
    std::vector<std::string> folders{folder(g_get_user_data_dir())};
    for (const char* const* dir = g_get_system_data_dirs(); *dir; ++dir) folders.push_back(folder(*dir));
    return folders;
}

std::size_t precedence(const std::vector<std::string>& folders, const std::string& path) {
    const auto found = std::find_if(folders.begin(), folders.end(),
                                    [&](const std::string& folder) { return path.starts_with(folder); });
    return static_cast<std::size_t>(found - folders.begin());
}

}  // namespace

std::vector<DesktopEntry> GioAppFiles::desktopEntries() const {
    std::vector<DesktopEntry> entries;
    GList* all = g_app_info_get_all();
    for (GList* item = all; item; item = item->next) {
        auto* instance = static_cast<GTypeInstance*>(item->data);
        if (!g_type_check_instance_is_a(instance, g_desktop_app_info_get_type())) continue;
        entries.push_back(entryOf(reinterpret_cast<GDesktopAppInfo*>(instance)));
    }
    g_list_free_full(all, g_object_unref);

    // GIO answers in no particular order, each id once already; order them as the folders rank.
    const std::vector<std::string> folders = applicationFolders();
    std::sort(entries.begin(), entries.end(), [&](const DesktopEntry& a, const DesktopEntry& b) {
        const auto rankA = precedence(folders, a.path);
        const auto rankB = precedence(folders, b.path);
        return rankA != rankB ? rankA < rankB : a.id < b.id;
    });
    return entries;
}

std::optional<DesktopEntry> GioAppFiles::desktopEntry(const std::string& path) const {
    const gio::ObjectPtr<GDesktopAppInfo> info(g_desktop_app_info_new_from_filename(path.c_str()));
    if (!info) return std::nullopt;
    return entryOf(info.get());
}

}  // namespace ostrelle
