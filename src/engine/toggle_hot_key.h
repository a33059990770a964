#pragma once

#include <functional>
#include <optional>

#include "actions/key_shortcut.h"
#include "engine/hot_key_registrar.h"

namespace ostrelle {

// The one system-wide shortcut that turns all gestures on and off from any application.
// A change registers the new combination before releasing the old one, so a failed change never
// leaves the user without a toggle key.
class ToggleHotKey {
  public:
    using Status = HotKeyRegistrar::Status;

    ToggleHotKey(HotKeyRegistrar& registrar, std::function<void()> onPress);
    ~ToggleHotKey();
    ToggleHotKey(const ToggleHotKey&) = delete;
    ToggleHotKey& operator=(const ToggleHotKey&) = delete;

    // Makes `shortcut` the toggle key (nothing removes it). 0 on success; on failure the old key stays.
    Status set(const std::optional<KeyShortcut>& shortcut);

    // While suspended nothing is registered; the stored shortcut is kept and registered again after.
    bool suspended() const { return suspended_; }
    void setSuspended(bool suspended);

    const std::optional<KeyShortcut>& shortcut() const { return shortcut_; }
    void setShortcut(std::optional<KeyShortcut> shortcut) { shortcut_ = shortcut; }
    bool isRegistered() const { return reference_.has_value(); }

  private:
    HotKeyRegistrar::Registration registerShortcut(const KeyShortcut& shortcut);
    void unregister();

    HotKeyRegistrar& registrar_;
    std::function<void()> onPress_;
    std::optional<HotKeyRegistrar::Reference> reference_;
    std::optional<KeyShortcut> shortcut_;
    bool suspended_ = false;
};

}  // namespace ostrelle
