#pragma once

#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

#include "recognition/contact.h"

namespace ostrelle::bench {

// Three fingers circling slowly, one frame per entry: a steady moving session in which every
// in-session rule is evaluated, the hand path fills up, and nothing ever fires.
inline std::vector<std::array<Contact, 3>> circlingHand(int frames) {
    std::vector<std::array<Contact, 3>> result(static_cast<std::size_t>(frames));
    for (int i = 0; i < frames; ++i) {
        const double dx = 0.02 * std::cos(i * 0.2);
        const double dy = 0.02 * std::sin(i * 0.2);
        for (std::size_t f = 0; f < 3; ++f) {
            result[static_cast<std::size_t>(i)][f] = {static_cast<std::int64_t>(f),
                                                      0.4 + 0.1 * static_cast<double>(f) + dx, 0.5 + dy};
        }
    }
    return result;
}

}  // namespace ostrelle::bench
