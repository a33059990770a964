#include "engine/toggle_hot_key.h"

#include <limits>

#include "support/contract.h"

namespace ostrelle {

ToggleHotKey::ToggleHotKey(HotKeyRegistrar& registrar, std::function<void()> onPress)
    : registrar_(registrar), onPress_(std::move(onPress)) {
    // There is only one hot key, so a press needs no further decoding.
    registrar_.setPressHandler([this] { onPress_(); });
}

ToggleHotKey::~ToggleHotKey() {
    unregister();
    registrar_.setPressHandler(nullptr);
}

ToggleHotKey::Status ToggleHotKey::set(const std::optional<KeyShortcut>& shortcut) {
    setSuspended(false);
    if (!shortcut) {
        unregister();
        shortcut_.reset();
        return HotKeyRegistrar::success;
    }
    if (shortcut_ == shortcut && reference_) return HotKeyRegistrar::success;
    const HotKeyRegistrar::Registration registration = registerShortcut(*shortcut);
    if (registration.status != HotKeyRegistrar::success) return registration.status;
    unregister();
    reference_ = registration.reference;
    shortcut_ = shortcut;
    return HotKeyRegistrar::success;
}

void ToggleHotKey::setSuspended(bool suspended) {
    if (suspended == suspended_) return;
    suspended_ = suspended;
    if (suspended) {
        unregister();
    } else if (shortcut_) {
        // Not reported: on failure the key simply stays unregistered until the next change.
        reference_ = registerShortcut(*shortcut_).reference;
    }
}

HotKeyRegistrar::Registration ToggleHotKey::registerShortcut(const KeyShortcut& shortcut) {
    if (shortcut.key < 0 || shortcut.key > std::numeric_limits<std::uint32_t>::max()) {
        contractViolation("hot key code outside the 32-bit unsigned range");
    }
    return registrar_.registerHotKey(static_cast<std::uint32_t>(shortcut.key), shortcut.carbonModifiers());
}

void ToggleHotKey::unregister() {
    if (reference_) registrar_.unregisterHotKey(*reference_);
    reference_.reset();
}

}  // namespace ostrelle
