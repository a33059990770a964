#pragma once

#include <cstdint>
#include <optional>

#include "recognition/contact.h"

namespace ostrelle {

// One finger of the current session, from landing to lift.
struct Track {
    Contact start;                  // where the finger landed
    double startTime = 0;           // landing time
    Contact last;                   // latest position
    double maxMove = 0;             // largest distance of any later position from start
    std::optional<double> endTime;  // lift time; absent while the finger is down
    Contact anchor;                 // reference for drift and displacements; moves when another finger lands
    double drift = 0;               // largest distance of any later position from anchor
    bool spent = false;             // already took part in a gesture that fired

    static Track landed(const Contact& contact, double time) {
        return {contact, time, contact, 0, std::nullopt, contact, 0, false};
    }

    bool isOpen() const { return !endTime.has_value(); }
    double dx() const { return last.x - anchor.x; }
    double dy() const { return last.y - anchor.y; }
};

}  // namespace ostrelle
