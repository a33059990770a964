#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace ostrelle {

// One capability bitmap of an input device as sysfs shows it (`capabilities/abs`, `.../key`,
// `properties`): hexadecimal words separated by spaces, the most significant first. Reading it
// there needs no permission on the device node, so a touchpad can be told from a keyboard
// before it is opened.
class CapabilityBits {
  public:
    // Nothing when the text is not such a bitmap.
    static std::optional<CapabilityBits> parse(std::string_view text);

    bool has(unsigned bit) const;

  private:
    // The kernel's words are its `unsigned long`, as wide as ours.
    static constexpr unsigned wordBits = sizeof(unsigned long) * 8;
    std::vector<unsigned long> words_;  // least significant first
};

// What udev's input rules call a touchpad: multitouch positions and a finger tool, and not a
// touch screen (INPUT_PROP_DIRECT).
bool looksLikeTouchpad(const CapabilityBits& absolute, const CapabilityBits& keys,
                       const CapabilityBits& properties);

}  // namespace ostrelle
