#include "platform/linux/x11_hot_key_registrar.h"

#include <X11/XKBlib.h>
#include <X11/Xlib.h>
#include <X11/keysym.h>

#include "actions/linux_key_codes.h"

namespace ostrelle {
namespace {

constexpr int xKeyCodeOffset = 8;                   // X key codes are the evdev codes shifted by 8
constexpr unsigned fallbackNumLockMask = Mod2Mask;  // where every common keymap puts NumLock

// The modifier bit NumLock is mapped to, read from the server's modifier map.
unsigned findNumLockMask(Display* display) {
    const KeyCode numLock = XKeysymToKeycode(display, XK_Num_Lock);
    XModifierKeymap* map = XGetModifierMapping(display);
    if (map == nullptr || numLock == 0) {
        if (map != nullptr) XFreeModifiermap(map);
        return fallbackNumLockMask;
    }
    unsigned mask = 0;
    for (int modifier = 0; modifier < 8 && mask == 0; ++modifier) {
        for (int slot = 0; slot < map->max_keypermod; ++slot) {
            if (map->modifiermap[modifier * map->max_keypermod + slot] == numLock) {
                mask = 1u << modifier;
                break;
            }
        }
    }
    XFreeModifiermap(map);
    return mask;
}

unsigned xModifiers(std::uint32_t hotKeyModifiers) {
    unsigned mask = 0;
    if (hotKeyModifiers & hot_key::command) mask |= Mod4Mask;  // Super
    if (hotKeyModifiers & hot_key::shift) mask |= ShiftMask;
    if (hotKeyModifiers & hot_key::option) mask |= Mod1Mask;  // Alt
    if (hotKeyModifiers & hot_key::control) mask |= ControlMask;
    return mask;
}

constexpr unsigned hotKeyModifierMask = Mod4Mask | ShiftMask | Mod1Mask | ControlMask;

}  // namespace

X11HotKeyRegistrar::X11HotKeyRegistrar(X11Connection& connection)
    : connection_(connection),
      listener_(connection.addListener([this](const XEvent& event) { onEvent(event); })),
      numLockMask_(findNumLockMask(connection.display())) {
    // Held keys then repeat as presses alone, without a release between, so a held toggle key
    // toggles once.
    XkbSetDetectableAutoRepeat(connection.display(), True, nullptr);
}

X11HotKeyRegistrar::~X11HotKeyRegistrar() {
    connection_.removeListener(listener_);
    for (const auto& [reference, combination] : registered_) ungrab(combination);
    XFlush(connection_.display());
}

std::array<unsigned, 4> X11HotKeyRegistrar::lockVariants() const {
    // Without a NumLock modifier the last two repeat the first two, which X takes as it is.
    return {0u, LockMask, numLockMask_, LockMask | numLockMask_};
}

bool X11HotKeyRegistrar::isRegistered(const Combination& combination) const {
    for (const auto& [reference, held] : registered_) {
        if (held == combination) return true;
    }
    return false;
}

HotKeyRegistrar::Registration X11HotKeyRegistrar::registerHotKey(std::uint32_t keyCode,
                                                                 std::uint32_t modifiers) {
    const std::optional<std::uint16_t> linuxKey = linuxKeyCode(keyCode);
    if (!linuxKey) return {hot_key::noSuchKey, std::nullopt};
    const Combination combination{*linuxKey + xKeyCodeOffset, xModifiers(modifiers)};
    // Grabbing again what this client holds would succeed, and a failure would then release it.
    if (!isRegistered(combination)) {
        Display* display = connection_.display();
        X11ErrorTrap trap(connection_);
        for (const unsigned locks : lockVariants()) {
            XGrabKey(display, combination.keyCode, combination.modifiers | locks, connection_.root(), False,
                     GrabModeAsync, GrabModeAsync);
        }
        const int error = trap.sync();
        if (error != Success) {
            // Only this client's grabs are released; the other client keeps its own.
            ungrab(combination);
            return {error == BadAccess ? alreadyTaken : static_cast<std::int32_t>(error), std::nullopt};
        }
    }
    const Reference reference = nextReference_++;
    registered_.emplace(reference, combination);
    return {success, reference};
}

void X11HotKeyRegistrar::unregisterHotKey(Reference reference) {
    const auto found = registered_.find(reference);
    if (found == registered_.end()) return;
    const Combination combination = found->second;
    registered_.erase(found);
    if (isRegistered(combination)) return;
    ungrab(combination);
    XFlush(connection_.display());
}

void X11HotKeyRegistrar::ungrab(const Combination& combination) {
    for (const unsigned locks : lockVariants()) {
        XUngrabKey(connection_.display(), combination.keyCode, combination.modifiers | locks,
                   connection_.root());
    }
}

void X11HotKeyRegistrar::onEvent(const XEvent& event) {
    if (event.type == KeyRelease) {
        if (keyDown_ == static_cast<int>(event.xkey.keycode)) keyDown_.reset();
        return;
    }
    if (event.type != KeyPress || event.xkey.window != connection_.root()) return;
    const Combination pressed{static_cast<int>(event.xkey.keycode), event.xkey.state & hotKeyModifierMask};
    if (!isRegistered(pressed) || keyDown_ == pressed.keyCode) return;
    keyDown_ = pressed.keyCode;
    if (onPress_) onPress_();
}

}  // namespace ostrelle
