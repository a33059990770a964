#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace ostrelle {

// The user's current keyboard layout, asked for the names of keys that have no fixed name.
// Platform adapters implement it; without one, such keys read "Key N".
class KeyboardLayout {
  public:
    virtual ~KeyboardLayout() = default;

    // What the key types on its own (no modifier held, dead keys not composed, at most four
    // UTF-16 units), as UTF-8; nothing when the layout has no key data or the translation fails.
    // Case and blankness are the caller's business.
    virtual std::optional<std::string> characters(std::uint16_t keyCode) const = 0;
};

}  // namespace ostrelle
