#pragma once

#include <cstdint>
#include <memory>
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

    // The layout the key names use; set by the platform layer at start, on the main thread.
    // Null (the default) means no layout.
    static void setCurrent(std::shared_ptr<const KeyboardLayout> layout);
    static std::shared_ptr<const KeyboardLayout> current();
};

}  // namespace ostrelle
