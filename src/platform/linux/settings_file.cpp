#include "platform/linux/settings_file.h"

#include <fmt/format.h>

#include "support/atomic_file.h"
#include "support/file_lock.h"
#include "support/log.h"

namespace ostrelle {

using Json = nlohmann::ordered_json;

std::filesystem::path defaultSettingsPath(const EnvironmentLookup& environment) {
    return defaultBindingsPath(environment, PathConvention::xdg).parent_path() / "settings.json";
}

SettingsFile::SettingsFile(std::filesystem::path file) : file_(std::move(file)) {
    values_ = read();
}

Json SettingsFile::read() {
    const FileReadResult result = readWholeFile(file_);
    if (result.status == FileReadResult::Status::missing) return Json::object();
    std::string problem;
    if (result.status == FileReadResult::Status::unreadable) {
        problem = result.error;
    } else {
        Json parsed = Json::parse(result.bytes, nullptr, false);
        if (parsed.is_object()) {
            badContent_.clear();
            return parsed;
        }
        problem = parsed.is_discarded() ? "not JSON" : "not a JSON object";
    }
    if (badContent_ != result.bytes + problem) {
        badContent_ = result.bytes + problem;
        Log::warning(fmt::format("settings file {} ignored ({}); defaults apply until a setting changes",
                                 file_.string(), problem));
    }
    return Json::object();
}

std::optional<bool> SettingsFile::boolValue(const std::string& key) const {
    const auto found = values_.find(key);
    if (found == values_.end() || !found->is_boolean()) return std::nullopt;
    return found->get<bool>();
}

std::optional<std::string> SettingsFile::dataValue(const std::string& key) const {
    const auto found = values_.find(key);
    if (found == values_.end()) return std::nullopt;
    if (found->is_string()) return found->get<std::string>();
    if (found->is_object() || found->is_array()) return found->dump();
    return std::nullopt;
}

Json SettingsFile::storedForm(const std::string& bytes) {
    Json parsed = Json::parse(bytes, nullptr, false);
    if (!parsed.is_discarded() && (parsed.is_object() || parsed.is_array())) return parsed;
    return bytes;
}

std::optional<std::string> SettingsFile::update(const std::string& key, const std::optional<Json>& value) {
    const FileLock lock(file_.string() + std::string(lockSuffix));
    if (!lock.isHeld()) return lock.error();
    // Under the lock the file is the truth: another process's keys are kept.
    Json current = read();
    if (value) {
        current[key] = *value;
    } else {
        current.erase(key);
    }
    if (auto failure = writeFileAtomically(file_, current.dump(2) + "\n")) return failure;
    // Only this key: other keys another process changed are left for reload() to report.
    if (value) {
        values_[key] = *value;
    } else {
        values_.erase(key);
    }
    return std::nullopt;
}

void SettingsFile::logFailure(const std::optional<std::string>& failure) const {
    if (failure) Log::error(fmt::format("cannot save settings: {}", *failure));
}

void SettingsFile::setBool(const std::string& key, bool value) {
    logFailure(update(key, Json(value)));
}

void SettingsFile::setData(const std::string& key, const std::string& value) {
    logFailure(update(key, storedForm(value)));
}

void SettingsFile::remove(const std::string& key) {
    logFailure(update(key, std::nullopt));
}

std::vector<std::string> SettingsFile::reload() {
    Json fresh = read();
    std::vector<std::string> changed;
    for (const auto& [key, value] : fresh.items()) {
        const auto old = values_.find(key);
        if (old == values_.end() || *old != value) changed.push_back(key);
    }
    for (const auto& [key, value] : values_.items())
        if (!fresh.contains(key)) changed.push_back(key);
    values_ = std::move(fresh);
    return changed;
}

}  // namespace ostrelle
