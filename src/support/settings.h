#pragma once

#include <map>
#include <optional>
#include <string>
#include <variant>

namespace ostrelle {

// The user defaults: a few keys with boolean or data values.
class Settings {
  public:
    virtual ~Settings() = default;
    // Absent when the key is missing or holds something that is not a boolean.
    virtual std::optional<bool> boolValue(const std::string& key) const = 0;
    // Absent when the key is missing or holds something that is not data.
    virtual std::optional<std::string> dataValue(const std::string& key) const = 0;
    virtual void setBool(const std::string& key, bool value) = 0;
    virtual void setData(const std::string& key, const std::string& value) = 0;
    virtual void remove(const std::string& key) = 0;
};

// Well-known keys.
namespace settings_keys {
inline constexpr const char* listening = "listening";
inline constexpr const char* toggleShortcut = "toggleShortcut";
inline constexpr const char* hapticFeedback = "hapticFeedback";
inline constexpr const char* launchedBefore = "SUHasLaunchedBefore";
}  // namespace settings_keys

// Settings kept in memory only: for tests, replays and headless runs that must not touch the user's.
class InMemorySettings final : public Settings {
  public:
    std::optional<bool> boolValue(const std::string& key) const override {
        const auto it = values_.find(key);
        if (it == values_.end() || !std::holds_alternative<bool>(it->second)) return std::nullopt;
        return std::get<bool>(it->second);
    }
    std::optional<std::string> dataValue(const std::string& key) const override {
        const auto it = values_.find(key);
        if (it == values_.end() || !std::holds_alternative<std::string>(it->second)) return std::nullopt;
        return std::get<std::string>(it->second);
    }
    void setBool(const std::string& key, bool value) override { values_[key] = value; }
    void setData(const std::string& key, const std::string& value) override { values_[key] = value; }
    void remove(const std::string& key) override { values_.erase(key); }

  private:
    std::map<std::string, std::variant<bool, std::string>> values_;
};

}  // namespace ostrelle
