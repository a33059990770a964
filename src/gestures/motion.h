#pragma once

#include <array>
#include <optional>
#include <string_view>

#include "support/point.h"

namespace ostrelle {

enum class Motion { tap, doubleTap, click, swipe };
enum class SwipeDirection { up, down, left, right };

inline constexpr std::array<Motion, 4> allMotions{Motion::tap, Motion::doubleTap, Motion::click,
                                                  Motion::swipe};
inline constexpr std::array<SwipeDirection, 4> allSwipeDirections{
    SwipeDirection::up, SwipeDirection::down, SwipeDirection::left, SwipeDirection::right};

// The raw values are what ids and files carry, spelled exactly so.
constexpr std::string_view rawValue(Motion motion) {
    switch (motion) {
        case Motion::tap:
            return "tap";
        case Motion::doubleTap:
            return "doubleTap";
        case Motion::click:
            return "click";
        case Motion::swipe:
            return "swipe";
    }
    return "";
}

constexpr std::string_view rawValue(SwipeDirection direction) {
    switch (direction) {
        case SwipeDirection::up:
            return "up";
        case SwipeDirection::down:
            return "down";
        case SwipeDirection::left:
            return "left";
        case SwipeDirection::right:
            return "right";
    }
    return "";
}

// What the user sees for a motion.
constexpr std::string_view label(Motion motion) {
    switch (motion) {
        case Motion::tap:
            return "Tap";
        case Motion::doubleTap:
            return "Double tap";
        case Motion::click:
            return "Click";
        case Motion::swipe:
            return "Swipe";
    }
    return "";
}

constexpr std::optional<Motion> motionFromRaw(std::string_view raw) {
    for (Motion m : allMotions) {
        if (rawValue(m) == raw) return m;
    }
    return std::nullopt;
}

constexpr std::optional<SwipeDirection> swipeDirectionFromRaw(std::string_view raw) {
    for (SwipeDirection d : allSwipeDirections) {
        if (rawValue(d) == raw) return d;
    }
    return std::nullopt;
}

// The direction of a displacement: horizontal only when |dx| > |dy|, so an exact diagonal is vertical.
constexpr SwipeDirection directionOf(double dx, double dy) {
    const double ax = dx < 0 ? -dx : dx;
    const double ay = dy < 0 ? -dy : dy;
    if (ax > ay) return dx > 0 ? SwipeDirection::right : SwipeDirection::left;
    return dy > 0 ? SwipeDirection::down : SwipeDirection::up;
}

// One unit in the direction, on the pad's axes (y grows downward).
constexpr Point unitVector(SwipeDirection direction) {
    switch (direction) {
        case SwipeDirection::up:
            return {0, -1};
        case SwipeDirection::down:
            return {0, 1};
        case SwipeDirection::left:
            return {-1, 0};
        case SwipeDirection::right:
            return {1, 0};
    }
    return {};
}

}  // namespace ostrelle
