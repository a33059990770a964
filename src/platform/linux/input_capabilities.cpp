#include "platform/linux/input_capabilities.h"

#include <cctype>

#include "touchpad/evdev_event.h"

namespace ostrelle {

std::optional<CapabilityBits> CapabilityBits::parse(std::string_view text) {
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.back()))) text.remove_suffix(1);
    if (text.empty()) return std::nullopt;
    CapabilityBits bits;
    std::size_t end = text.size();
    while (true) {
        const std::size_t space = text.rfind(' ', end - 1);
        const std::size_t begin = space == std::string_view::npos ? 0 : space + 1;
        const std::string_view word = text.substr(begin, end - begin);
        if (word.empty() || word.size() > wordBits / 4) return std::nullopt;
        unsigned long value = 0;
        for (const char digit : word) {
            const int nibble = std::isdigit(static_cast<unsigned char>(digit)) ? digit - '0'
                               : digit >= 'a' && digit <= 'f'                  ? digit - 'a' + 10
                                                                               : -1;
            if (nibble < 0) return std::nullopt;
            value = (value << 4) | static_cast<unsigned long>(nibble);
        }
        bits.words_.push_back(value);
        if (space == std::string_view::npos) return bits;
        end = space;
    }
}

bool CapabilityBits::has(unsigned bit) const {
    const std::size_t word = bit / wordBits;
    return word < words_.size() && ((words_[word] >> (bit % wordBits)) & 1UL) != 0;
}

bool looksLikeTouchpad(const CapabilityBits& absolute, const CapabilityBits& keys,
                       const CapabilityBits& properties) {
    return absolute.has(evdev::ABS_MT_POSITION_X) && absolute.has(evdev::ABS_MT_POSITION_Y) &&
           keys.has(evdev::BTN_TOOL_FINGER) && !properties.has(evdev::INPUT_PROP_DIRECT);
}

}  // namespace ostrelle
