#pragma once

#include <array>
#include <charconv>
#include <optional>
#include <string_view>

#include "gestures/motion.h"

namespace ostrelle {

// Composes a gesture id on the stack, so that checking a candidate against the catalog
// costs no heap allocation on the per-frame path.
class GestureIDBuffer {
  public:
    GestureIDBuffer& number(int value) {
        const auto result = std::to_chars(text_.data() + length_, text_.data() + text_.size(), value);
        length_ = static_cast<std::size_t>(result.ptr - text_.data());
        return *this;
    }
    GestureIDBuffer& word(std::string_view part) {
        for (char c : part) {
            if (length_ < text_.size()) text_[length_++] = c;
        }
        return *this;
    }
    GestureIDBuffer& component(std::string_view part) { return word(".").word(part); }

    std::string_view view() const { return {text_.data(), length_}; }

    // The same text as Gesture::genericID, without allocating.
    static GestureIDBuffer generic(int fingers, Motion motion, std::optional<SwipeDirection> direction) {
        GestureIDBuffer id;
        id.number(fingers).component(rawValue(motion));
        if (direction) id.component(rawValue(*direction));
        return id;
    }

  private:
    std::array<char, 48> text_{};
    std::size_t length_ = 0;
};

}  // namespace ostrelle
