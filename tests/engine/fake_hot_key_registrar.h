#pragma once

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "engine/hot_key_registrar.h"

namespace ostrelle::testing {

// Global hot keys as the system keeps them: one holder per combination. Combinations held by
// other applications answer "already taken"; `failWith` makes every registration fail.
class FakeHotKeyRegistrar final : public HotKeyRegistrar {
public:
    using Combination = std::pair<std::uint32_t, std::uint32_t>;

    Registration registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers) override {
        ++registrations;
        const Combination combination{keyCode, modifiers};
        if (failWith != success) return {failWith, std::nullopt};
        if (takenElsewhere.contains(combination) || isRegistered(combination)) return {alreadyTaken, std::nullopt};
        const Reference reference = ++lastReference_;
        registered_[reference] = combination;
        return {success, reference};
    }
    void unregisterHotKey(Reference reference) override { registered_.erase(reference); }
    void setPressHandler(std::function<void()> onPress) override { onPress_ = std::move(onPress); }

    // The user presses a combination: only a registered one reaches us.
    void press(std::uint32_t keyCode, std::uint32_t modifiers) {
        if (isRegistered({keyCode, modifiers}) && onPress_) onPress_();
    }
    bool isRegistered(Combination combination) const {
        return std::any_of(registered_.begin(), registered_.end(),
                           [&](const auto& entry) { return entry.second == combination; });
    }
    std::size_t registeredCount() const { return registered_.size(); }
    bool hasPressHandler() const { return static_cast<bool>(onPress_); }

    std::set<Combination> takenElsewhere;
    Status failWith = success;
    int registrations = 0;

private:
    std::map<Reference, Combination> registered_;
    Reference lastReference_ = 0;
    std::function<void()> onPress_;
};

}  // namespace ostrelle::testing
