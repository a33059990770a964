#pragma once

#include <filesystem>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "support/default_paths.h"
#include "support/settings.h"

namespace ostrelle {

// $XDG_CONFIG_HOME/Ostrelle/settings.json, beside the bindings.
std::filesystem::path defaultSettingsPath(const EnvironmentLookup& environment);

// The settings as one JSON object in a file that the service, the desktop application and the
// command line share. Booleans are JSON booleans; a data value that is a JSON object or array
// (the toggle shortcut) is kept as that JSON, so a person can read and edit it, anything else as
// a string. Every change is a read-modify-write under a lock on "settings.json.lock" and an atomic
// replace, so two processes never lose each other's keys. A file that does not parse reads as
// empty (logged once) and is left alone until a change is made. Used from one thread.
class SettingsFile final : public Settings {
  public:
    static constexpr std::string_view lockSuffix = ".lock";

    explicit SettingsFile(std::filesystem::path file);

    std::optional<bool> boolValue(const std::string& key) const override;
    std::optional<std::string> dataValue(const std::string& key) const override;
    // Write failures are logged, as for every persisted setting.
    void setBool(const std::string& key, bool value) override;
    void setData(const std::string& key, const std::string& value) override;
    void remove(const std::string& key) override;

    // Sets (or, with nothing, removes) one key as it is stored; a description of the failure.
    std::optional<std::string> update(const std::string& key,
                                      const std::optional<nlohmann::ordered_json>& value);
    // Reads the file again, as after another process changed it; the keys whose values differ.
    std::vector<std::string> reload();

    const nlohmann::ordered_json& values() const { return values_; }
    const std::filesystem::path& path() const { return file_; }

    // What setData stores for `bytes`: its JSON when it is an object or array, else the string.
    static nlohmann::ordered_json storedForm(const std::string& bytes);

  private:
    nlohmann::ordered_json read();
    void logFailure(const std::optional<std::string>& failure) const;

    std::filesystem::path file_;
    nlohmann::ordered_json values_ = nlohmann::ordered_json::object();
    std::string badContent_;  // the unparsable content last logged, so it is logged only once
};

}  // namespace ostrelle
