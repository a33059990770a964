#pragma once

#include <algorithm>
#include <map>
#include <ranges>
#include <utility>

#include "actions/key_shortcut.h"
#include "engine/hot_key_registrar.h"

namespace ostrelle::testing {

// Global hot keys as the system keeps them: one holder per combination, so registering a held
// one again answers "already taken". `failWith` makes every registration fail with that status.
class FakeHotKeyRegistrar final : public HotKeyRegistrar {
  public:
    Registration registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers) override {
        ++registrations;
        if (failWith != success) return {failWith, std::nullopt};
        if (holds(keyCode, modifiers)) return {alreadyTaken, std::nullopt};
        registered[++lastReference_] = {keyCode, modifiers};
        return {success, lastReference_};
    }
    void unregisterHotKey(Reference reference) override { registered.erase(reference); }
    void setPressHandler(std::function<void()> handler) override { onPress = std::move(handler); }

    // The user presses a shortcut: only a registered one reaches us.
    void press(const KeyShortcut& shortcut) {
        if (holds(static_cast<std::uint32_t>(shortcut.key), shortcut.carbonModifiers()) && onPress) onPress();
    }

    std::map<Reference, std::pair<std::uint32_t, std::uint32_t>> registered;
    Status failWith = success;
    int registrations = 0;
    std::function<void()> onPress;

  private:
    bool holds(std::uint32_t keyCode, std::uint32_t modifiers) const {
        return std::ranges::count(std::views::values(registered), std::pair{keyCode, modifiers}) > 0;
    }

    Reference lastReference_ = 0;
};

}  // namespace ostrelle::testing
