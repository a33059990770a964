#include "platform/linux/desktop_gesture_settings.h"

#include <gio/gio.h>

#include <charconv>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

#include "gestures/kde_input_config.h"
#include "platform/linux/session_bus_address.h"

namespace ostrelle {
namespace {

namespace fs = std::filesystem;

constexpr const char* gnomeTouchpadSchema = "org.gnome.desktop.peripherals.touchpad";
constexpr const char* gnomeTapToClickKey = "tap-to-click";

constexpr const char* shellBusName = "org.gnome.Shell";
constexpr const char* shellObjectPath = "/org/gnome/Shell";
// A shell that does not answer within this costs the caller no more; the version is then unknown.
constexpr std::chrono::milliseconds shellVersionTimeLimit{500};

// KDE Plasma's input settings, in the XDG config folder.
constexpr std::string_view kcminputrcName = "kcminputrc";
// Far beyond any real kcminputrc.
constexpr std::uintmax_t kcminputrcMostBytes = 1 << 20;

struct GObjectRelease {
    void operator()(gpointer object) const { g_object_unref(object); }
};
template <typename T>
using GObjectPointer = std::unique_ptr<T, GObjectRelease>;

struct GVariantRelease {
    void operator()(GVariant* variant) const { g_variant_unref(variant); }
};

struct GErrorRelease {
    void operator()(GError* error) const { g_error_free(error); }
};

// Looked up in the schema source first: g_settings_new on a missing schema, or reading a key
// the schema lacks, ends the process. Upstream's default is off.
bool gnomeTapToClick() {
    GSettingsSchemaSource* source = g_settings_schema_source_get_default();  // not owned
    if (source == nullptr) return false;
    GSettingsSchema* schema = g_settings_schema_source_lookup(source, gnomeTouchpadSchema, TRUE);
    if (schema == nullptr) return false;
    bool isBoolean = false;
    if (g_settings_schema_has_key(schema, gnomeTapToClickKey)) {
        GSettingsSchemaKey* key = g_settings_schema_get_key(schema, gnomeTapToClickKey);
        isBoolean = g_variant_type_equal(g_settings_schema_key_get_value_type(key), G_VARIANT_TYPE_BOOLEAN);
        g_settings_schema_key_unref(key);
    }
    g_settings_schema_unref(schema);
    if (!isBoolean) return false;
    const GObjectPointer<GSettings> settings(g_settings_new(gnomeTouchpadSchema));
    return g_settings_get_boolean(settings.get(), gnomeTapToClickKey) != FALSE;
}

// Cancels a GIO operation that has not finished within the time limit.
class Deadline {
  public:
    explicit Deadline(std::chrono::milliseconds limit)
        : cancellable_(g_cancellable_new()), watch_([this, limit] {
              std::unique_lock lock(mutex_);
              if (!finished_.wait_for(lock, limit, [this] { return done_; }))
                  g_cancellable_cancel(cancellable_.get());
          }) {}
    ~Deadline() {
        {
            const std::lock_guard lock(mutex_);
            done_ = true;
        }
        finished_.notify_one();
        watch_.join();
    }
    Deadline(const Deadline&) = delete;
    Deadline& operator=(const Deadline&) = delete;

    GCancellable* cancellable() const { return cancellable_.get(); }

  private:
    GObjectPointer<GCancellable> cancellable_;
    std::mutex mutex_;
    std::condition_variable finished_;
    bool done_ = false;
    std::thread watch_;
};

// The major version in GNOME Shell's version text ("46.2" → 46, "3.38.4" → 3).
std::optional<int> gnomeShellMajorFrom(std::string_view version) {
    int major = 0;
    const auto [end, problem] = std::from_chars(version.data(), version.data() + version.size(), major);
    if (problem != std::errc() || end == version.data()) return std::nullopt;
    return major;
}

// The ShellVersion property of the running GNOME Shell; nothing when no shell answers in time.
std::optional<int> runningGnomeShellMajor(const EnvironmentLookup& environment) {
    const auto address = sessionBusAddress(environment);
    if (!address) return std::nullopt;
    const Deadline deadline(shellVersionTimeLimit);
    GError* rawError = nullptr;
    const GObjectPointer<GDBusConnection> bus(g_dbus_connection_new_for_address_sync(
        address->c_str(),
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, deadline.cancellable(), &rawError));
    std::unique_ptr<GError, GErrorRelease> error(rawError);
    if (!bus) return std::nullopt;
    const std::unique_ptr<GVariant, GVariantRelease> reply(g_dbus_connection_call_sync(
        bus.get(), shellBusName, shellObjectPath, "org.freedesktop.DBus.Properties", "Get",
        g_variant_new("(ss)", shellBusName, "ShellVersion"), G_VARIANT_TYPE("(v)"),
        G_DBUS_CALL_FLAGS_NO_AUTO_START, static_cast<gint>(shellVersionTimeLimit.count()),
        deadline.cancellable(), &rawError));
    error.reset(rawError);
    g_dbus_connection_close_sync(bus.get(), nullptr, nullptr);
    if (!reply) return std::nullopt;
    GVariant* rawValue = nullptr;
    g_variant_get(reply.get(), "(v)", &rawValue);
    const std::unique_ptr<GVariant, GVariantRelease> value(rawValue);
    if (!g_variant_is_of_type(value.get(), G_VARIANT_TYPE_STRING)) return std::nullopt;
    return gnomeShellMajorFrom(g_variant_get_string(value.get(), nullptr));
}

// The XDG config folder: XDG_CONFIG_HOME when it is an absolute path, else ~/.config.
fs::path configHome(const EnvironmentLookup& environment) {
    if (const auto value = environment("XDG_CONFIG_HOME"); value && fs::path(*value).is_absolute()) {
        return *value;
    }
    return fs::path(environment("HOME").value_or("")) / ".config";
}

// Empty when the file is missing, unreadable or larger than any real one.
std::string readSmallFile(const fs::path& file) {
    std::error_code error;
    const auto size = fs::file_size(file, error);
    if (error || size > kcminputrcMostBytes) return {};
    std::string text(size, '\0');
    std::ifstream stream(file, std::ios::binary);
    stream.read(text.data(), static_cast<std::streamsize>(size));
    text.resize(static_cast<std::size_t>(stream.gcount()));
    return text;
}

}  // namespace

DesktopGestureSettings readDesktopGestureSettings(const EnvironmentLookup& environment) {
    DesktopGestureSettings settings;
    settings.desktop = linuxDesktopFrom(environment("XDG_CURRENT_DESKTOP").value_or(""));
    switch (settings.desktop) {
        case LinuxDesktop::gnome:
            settings.tapToClick = gnomeTapToClick();
            // Unknown stays unknown here; the conflict rules then take GNOME 40 or later.
            settings.gnomeShellMajor = runningGnomeShellMajor(environment);
            break;
        case LinuxDesktop::kde:
            settings.tapToClick = kdeTapToClick(readSmallFile(configHome(environment) / kcminputrcName));
            break;
        case LinuxDesktop::other:
            break;
    }
    return settings;
}

}  // namespace ostrelle
