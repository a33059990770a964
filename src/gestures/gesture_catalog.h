#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "gestures/gesture.h"
#include "gestures/motion.h"

namespace ostrelle {

// What a dot of a gesture icon shows a finger doing.
struct DotRole {
    enum class Kind { swipe, rest, tap, doubleTap, press, lift };

    Kind kind = Kind::rest;
    std::optional<SwipeDirection> direction;  // only for swipe

    static DotRole swipe(SwipeDirection d) { return {Kind::swipe, d}; }
    static DotRole rest() { return {Kind::rest, std::nullopt}; }
    static DotRole tap() { return {Kind::tap, std::nullopt}; }
    static DotRole doubleTap() { return {Kind::doubleTap, std::nullopt}; }
    static DotRole press() { return {Kind::press, std::nullopt}; }
    static DotRole lift() { return {Kind::lift, std::nullopt}; }

    friend bool operator==(const DotRole&, const DotRole&) = default;
};

std::string_view toString(DotRole::Kind kind);

// One finger of a gesture icon, in the icon's unit square.
struct Dot {
    double x = 0;
    double y = 0;
    DotRole role;

    friend bool operator==(const Dot&, const Dot&) = default;
};

struct GestureDef {
    std::string id;
    std::string name;
    int fingers = 0;
    std::string hint;
    std::vector<Dot> dots;
    std::optional<Motion> motion;             // plain taps, double taps, clicks and swipes only
    std::optional<SwipeDirection> direction;  // plain swipes only

    friend bool operator==(const GestureDef&, const GestureDef&) = default;
};

struct GestureGroup {
    std::string id;
    std::string name;
    std::optional<int> fingers;
    std::vector<GestureDef> gestures;

    friend bool operator==(const GestureGroup&, const GestureGroup&) = default;
};

// The fixed list of built-in gestures. Built once on first use, then shared read-only.
// It knows more gestures than it enables: the others keep their names and saved bindings
// but are neither offered nor acted on.
class GestureCatalog {
  public:
    using IDMap = std::map<std::string, GestureDef, std::less<>>;
    using OrderMap = std::map<std::string, int, std::less<>>;

    static const std::vector<GestureGroup>& allGroups();
    static const std::set<std::string, std::less<>>& enabled();
    static const std::vector<GestureGroup>& groups();
    static const std::vector<Gesture>& all();
    static const IDMap& byID();
    static const OrderMap& order();
    static bool isEnabled(const Gesture& gesture);

    // The definition of a built-in id, or null; the lookup the recognizer uses on every candidate.
    static const GestureDef* find(std::string_view id);
    // A shape-less gesture for a built-in id (enabled or not), or null.
    static const Gesture* known(std::string_view id);

    // The number word of a finger count in lower case, then " fingers" ("four fingers").
    static std::string fingersText(int fingers);
    // One dot per finger of the hand layout for that count, all with the same role.
    static std::vector<Dot> dots(int fingers, DotRole role);
};

}  // namespace ostrelle
