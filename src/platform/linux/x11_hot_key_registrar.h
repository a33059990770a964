#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>

#include "engine/hot_key_registrar.h"
#include "platform/linux/hot_key_modifiers.h"
#include "platform/linux/x11_connection.h"

namespace ostrelle {

// Global hot keys on X11: a passive grab of the key on the root window, so that the server sends
// the press to this client whichever window has the focus. CapsLock and NumLock count as
// modifiers to X, so each combination is grabbed four times: alone, with either lock and with
// both; a press counts whatever the locks' state.
class X11HotKeyRegistrar final : public HotKeyRegistrar {
  public:
    // Command, shift, option and control are grabbed as Super (Mod4), Shift, Alt (Mod1) and
    // Control; a key a PC keyboard lacks gives hot_key::noSuchKey.
    // The connection must outlive this and be watched on the main queue for presses to arrive.
    explicit X11HotKeyRegistrar(X11Connection& connection);
    ~X11HotKeyRegistrar() override;
    X11HotKeyRegistrar(const X11HotKeyRegistrar&) = delete;
    X11HotKeyRegistrar& operator=(const X11HotKeyRegistrar&) = delete;

    Registration registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers) override;
    void unregisterHotKey(Reference reference) override;
    void setPressHandler(std::function<void()> onPress) override { onPress_ = std::move(onPress); }

  private:
    struct Combination {
        int keyCode = 0;         // X key code
        unsigned modifiers = 0;  // X modifier mask without the locks

        friend auto operator<=>(const Combination&, const Combination&) = default;
    };

    // The lock combinations every grab is repeated with.
    std::array<unsigned, 4> lockVariants() const;
    void ungrab(const Combination& combination);
    bool isRegistered(const Combination& combination) const;
    void onEvent(const XEvent& event);

    X11Connection& connection_;
    X11Connection::ListenerId listener_;
    unsigned numLockMask_;
    std::map<Reference, Combination> registered_;
    Reference nextReference_ = 1;
    std::optional<int> keyDown_;  // the grabbed key held now: its auto-repeat presses don't count
    std::function<void()> onPress_;
};

}  // namespace ostrelle
