#pragma once

#include <cstdint>

#include "engine/hot_key_registrar.h"

namespace ostrelle::hot_key {

// The bits of the hot-key modifier mask the engine registers with (Carbon's numbering).
constexpr std::uint32_t command = 0x100;
constexpr std::uint32_t shift = 0x200;
constexpr std::uint32_t option = 0x800;
constexpr std::uint32_t control = 0x1000;

// The key has no counterpart on a PC keyboard (fn): the number Carbon gives for a bad parameter.
constexpr HotKeyRegistrar::Status noSuchKey = -50;

}  // namespace ostrelle::hot_key
