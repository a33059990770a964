#pragma once

#include <cstdint>

namespace ostrelle {

// A modifier-flag mask in the numbering of the macOS event system; the other platforms translate
// from it at their edge, so stored shortcuts mean the same everywhere.
using EventFlags = std::uint64_t;

struct EventFlag {
    static constexpr EventFlags shift = 0x20000;
    static constexpr EventFlags control = 0x40000;
    static constexpr EventFlags option = 0x80000;  // "alternate"
    static constexpr EventFlags command = 0x100000;
    static constexpr EventFlags numericPad = 0x200000;
    static constexpr EventFlags secondaryFn = 0x800000;
};

// The modifier bits of a global hot-key registration (the Carbon numbering).
struct HotKeyModifier {
    static constexpr std::uint32_t command = 0x100;
    static constexpr std::uint32_t shift = 0x200;
    static constexpr std::uint32_t option = 0x800;
    static constexpr std::uint32_t control = 0x1000;
};

}  // namespace ostrelle
