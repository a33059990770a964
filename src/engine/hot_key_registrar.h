#pragma once

#include <cstdint>
#include <functional>
#include <optional>

namespace ostrelle {

// The system's global hot-key facility: one registration per key combination, presses delivered
// on the main thread. Status 0 is success; `alreadyTaken` means another application holds it.
class HotKeyRegistrar {
  public:
    using Status = std::int32_t;
    using Reference = std::uint64_t;

    static constexpr Status success = 0;
    static constexpr Status alreadyTaken = -9878;
    // The desktop lets no program hold a global shortcut; the user binds one in its settings.
    static constexpr Status unavailable = -1;

    struct Registration {
        Status status = success;
        std::optional<Reference> reference;  // present exactly when status is success
    };

    virtual ~HotKeyRegistrar() = default;
    // keyCode: the virtual key code; modifiers: the hot-key modifier mask of the shortcut.
    virtual Registration registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers) = 0;
    virtual void unregisterHotKey(Reference reference) = 0;
    // The handler called for every press of any hot key registered here.
    virtual void setPressHandler(std::function<void()> onPress) = 0;
};

}  // namespace ostrelle
