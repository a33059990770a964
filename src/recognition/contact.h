#pragma once

#include <cstdint>

namespace ostrelle {

// One finger in a touch frame. Coordinates are normalized: x from the left edge (0) to the
// right edge (1), y from the top edge (0) to the bottom edge (1), so a positive change of y is "down".
struct Contact {
    std::int64_t id = 0;  // stable while the finger stays down
    double x = 0;
    double y = 0;

    friend bool operator==(const Contact&, const Contact&) = default;
};

}  // namespace ostrelle
