#pragma once

// Reads back what each finger did in a run of simulated frames, the way the recognizer sees it:
// a finger lands in the first frame that holds its id and lifts in the first frame without it.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>
#include <vector>

#include "performer.h"

namespace ostrelle::testing {

struct FingerLife {
    double down = 0;
    double up = 0;
    Point first;
    Point last;
    double maxMove = 0;  // largest distance from the landing point
};

inline std::map<std::int64_t, FingerLife> fingerLives(const std::vector<RecordedFrame>& frames) {
    std::map<std::int64_t, FingerLife> lives;
    std::map<std::int64_t, bool> down;
    for (const RecordedFrame& frame : frames) {
        for (auto& [id, isDown] : down) {
            const bool present = std::any_of(frame.contacts.begin(), frame.contacts.end(),
                                             [id = id](const Contact& c) { return c.id == id; });
            if (isDown && !present) {
                lives[id].up = frame.time;
                isDown = false;
            }
        }
        for (const Contact& c : frame.contacts) {
            const Point at{c.x, c.y};
            if (!down.contains(c.id)) {
                down[c.id] = true;
                lives[c.id] = {frame.time, 0, at, at, 0};
            }
            FingerLife& life = lives[c.id];
            life.last = at;
            life.maxMove = std::max(life.maxMove, distance(life.first, at));
        }
    }
    return lives;
}

inline double earliestDown(const std::map<std::int64_t, FingerLife>& lives) {
    double t = INFINITY;
    for (const auto& [id, life] : lives) t = std::min(t, life.down);
    return t;
}
inline double latestDown(const std::map<std::int64_t, FingerLife>& lives) {
    double t = -INFINITY;
    for (const auto& [id, life] : lives) t = std::max(t, life.down);
    return t;
}
inline double earliestUp(const std::map<std::int64_t, FingerLife>& lives) {
    double t = INFINITY;
    for (const auto& [id, life] : lives) t = std::min(t, life.up);
    return t;
}
inline double latestUp(const std::map<std::int64_t, FingerLife>& lives) {
    double t = -INFINITY;
    for (const auto& [id, life] : lives) t = std::max(t, life.up);
    return t;
}

}  // namespace ostrelle::testing
