#include "platform/linux/desktop_entry_launcher.h"

#include <fmt/format.h>
#include <gio/gdesktopappinfo.h>
#include <gio/gio.h>

#include "platform/linux/gio_handles.h"
#include "support/log.h"

namespace ostrelle {
namespace {

constexpr std::string_view desktopEntrySuffix = ".desktop";

}  // namespace

void DesktopEntryLauncher::open(const std::string& path) const {
    if (!path.ends_with(desktopEntrySuffix)) return;
    const gio::ObjectPtr<GDesktopAppInfo> info(g_desktop_app_info_new_from_filename(path.c_str()));
    if (!info) {
        Log::error(fmt::format("action failed: the application entry {} cannot be read", path));
        return;
    }
    auto* app = reinterpret_cast<GAppInfo*>(info.get());
    GError* error = nullptr;
    if (!g_app_info_launch(app, nullptr, nullptr, &error)) {
        Log::error(fmt::format("action failed: cannot start {} ({}): {}",
                               gio::text(g_app_info_get_display_name(app)), path,
                               error ? error->message : "no reason given"));
        g_clear_error(&error);
    }
}

}  // namespace ostrelle
