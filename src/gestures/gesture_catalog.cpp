#include "gestures/gesture_catalog.h"

#include <array>

#include "support/contract.h"
#include "support/text.h"

namespace ostrelle {
namespace {

using Position = std::array<double, 2>;

// Icon positions of the fingers of a relaxed hand, by finger count.
const std::vector<Position>& handRow(int fingers) {
    static const std::array<std::vector<Position>, 5> hand{{
        {{0.5, 0.48}},
        {{0.41, 0.48}, {0.59, 0.44}},
        {{0.33, 0.52}, {0.5, 0.42}, {0.67, 0.48}},
        {{0.27, 0.56}, {0.42, 0.43}, {0.58, 0.40}, {0.73, 0.48}},
        {{0.31, 0.46}, {0.45, 0.35}, {0.60, 0.34}, {0.74, 0.43}, {0.20, 0.76}},
    }};
    if (fingers < 1 || fingers > 5) contractViolation("hand layout asked for a finger count outside 1 to 5");
    return hand[static_cast<std::size_t>(fingers - 1)];
}

std::string numberName(int fingers) {
    return std::string(Gesture::word(fingers));
}

GestureDef plainTap(int n) {
    return {Gesture::genericID(n, Motion::tap, std::nullopt),
            numberName(n) + "-finger tap",
            n,
            "Rest " + GestureCatalog::fingersText(n) + " lightly, then lift together.",
            GestureCatalog::dots(n, DotRole::tap()),
            Motion::tap,
            std::nullopt};
}

GestureDef plainDoubleTap(int n) {
    return {Gesture::genericID(n, Motion::doubleTap, std::nullopt),
            numberName(n) + "-finger double tap",
            n,
            "Tap twice quickly with " + GestureCatalog::fingersText(n) + ".",
            GestureCatalog::dots(n, DotRole::doubleTap()),
            Motion::doubleTap,
            std::nullopt};
}

GestureDef plainClick(int n) {
    return {Gesture::genericID(n, Motion::click, std::nullopt),
            numberName(n) + "-finger click",
            n,
            "Press down with " + GestureCatalog::fingersText(n) + " until the trackpad clicks.",
            GestureCatalog::dots(n, DotRole::press()),
            Motion::click,
            std::nullopt};
}

std::vector<GestureDef> plainSwipes(int n) {
    std::vector<GestureDef> result;
    for (SwipeDirection d : allSwipeDirections) {
        const std::string dir(rawValue(d));
        result.push_back({Gesture::genericID(n, Motion::swipe, d), numberName(n) + "-finger swipe " + dir, n,
                          "Slide " + GestureCatalog::fingersText(n) + " " + dir + " in one motion.",
                          GestureCatalog::dots(n, DotRole::swipe(d)), Motion::swipe, d});
    }
    return result;
}

// Rest swipes: one finger holds still while one or two others slide up or down beside it.
std::vector<GestureDef> restSwipes(int sliding) {
    struct Variant {
        SwipeDirection vertical;
        bool left;
    };
    static constexpr std::array<Variant, 4> variants{{{SwipeDirection::down, true},
                                                      {SwipeDirection::up, true},
                                                      {SwipeDirection::down, false},
                                                      {SwipeDirection::up, false}}};
    std::vector<GestureDef> result;
    for (const Variant& v : variants) {
        const std::string vertical(rawValue(v.vertical));
        const std::string side = v.left ? "left" : "right";
        const double slideY = v.vertical == SwipeDirection::down ? 0.38 : 0.62;
        std::vector<Dot> dots{{v.left ? 0.7 : 0.3, 0.5, DotRole::rest()}};
        const std::vector<double> slideX =
            sliding == 1 ? std::vector<double>{v.left ? 0.36 : 0.64}
                         : (v.left ? std::vector<double>{0.28, 0.45} : std::vector<double>{0.55, 0.72});
        for (double x : slideX) dots.push_back({x, slideY, DotRole::swipe(v.vertical)});
        const int n = sliding + 1;
        result.push_back({std::to_string(n) + ".restSwipe." + vertical + "." + side,
                          "Hold one, slide " + std::string(sliding == 1 ? "another" : "two") + " " +
                              vertical + " on its " + side,
                          n,
                          "Rest one finger, then swipe " +
                              std::string(sliding == 1 ? "another finger" : "two fingers") + " " + vertical +
                              " on its " + side + ".",
                          dots, std::nullopt, std::nullopt});
    }
    return result;
}

GestureDef restTap(std::string id, int n, std::string name, std::string hint, std::vector<Dot> dots) {
    return {std::move(id), std::move(name), n, std::move(hint), std::move(dots), std::nullopt, std::nullopt};
}

// "Hold three, lift all but one": the outer fingers lift; the middle one stays, or slides.
std::vector<GestureDef> removeAllButOne() {
    auto layout = [](DotRole middle) {
        std::vector<Dot> dots = GestureCatalog::dots(3, DotRole::lift());
        dots[1].role = middle;
        return dots;
    };
    std::vector<GestureDef> result{restTap("3.restRemove", 3, "Hold three, lift all but one",
                                           "Rest three fingers still, then lift all but one.",
                                           layout(DotRole::rest()))};
    for (SwipeDirection d : allSwipeDirections) {
        const std::string dir(rawValue(d));
        result.push_back(restTap("3.restRemove." + dir, 3, "Hold three, lift all but one, slide it " + dir,
                                 "Rest three fingers still, lift all but one, then slide it " + dir + ".",
                                 layout(DotRole::swipe(d))));
    }
    return result;
}

void append(std::vector<GestureDef>& to, std::vector<GestureDef> more) {
    for (GestureDef& def : more) to.push_back(std::move(def));
}

std::vector<GestureGroup> buildAllGroups() {
    std::vector<GestureDef> two{
        restTap("2.restTap.left", 2, "Hold one, tap another on its left",
                "Rest one finger, then tap another finger well to its left.",
                {{0.62, 0.52, DotRole::rest()}, {0.36, 0.46, DotRole::tap()}}),
        restTap("2.restTap.right", 2, "Hold one, tap another on its right",
                "Rest one finger, then tap another finger well to its right.",
                {{0.38, 0.52, DotRole::rest()}, {0.64, 0.46, DotRole::tap()}}),
    };
    append(two, restSwipes(1));

    std::vector<GestureDef> three{
        plainClick(3),
        plainTap(3),
        restTap("3.restTap.between", 3, "Hold two, tap a third between them",
                "Rest two fingers apart, then tap a third between them.",
                {{0.3, 0.52, DotRole::rest()}, {0.7, 0.52, DotRole::rest()}, {0.5, 0.44, DotRole::tap()}}),
        restTap("3.restTap.left", 3, "Hold two, tap a third on their left",
                "Rest two fingers, then tap a third to their left.",
                {{0.5, 0.52, DotRole::rest()}, {0.72, 0.5, DotRole::rest()}, {0.26, 0.46, DotRole::tap()}}),
        restTap("3.restTap.right", 3, "Hold two, tap a third on their right",
                "Rest two fingers, then tap a third to their right.",
                {{0.28, 0.5, DotRole::rest()}, {0.5, 0.52, DotRole::rest()}, {0.74, 0.46, DotRole::tap()}}),
    };
    append(three, restSwipes(2));
    append(three, plainSwipes(3));
    append(three, removeAllButOne());

    // Four and five fingers deliberately differ from three: tap, double tap, click, and no double tap for
    // three.
    auto hand = [](int n) {
        std::vector<GestureDef> defs{plainTap(n), plainDoubleTap(n), plainClick(n)};
        append(defs, plainSwipes(n));
        return defs;
    };

    return {
        {"two", "2 fingers", 2, std::move(two)},
        {"three", "3 fingers", 3, std::move(three)},
        {"four", "4 fingers", 4, hand(4)},
        {"five", "5 fingers", 5, hand(5)},
    };
}

}  // namespace

std::string_view toString(DotRole::Kind kind) {
    switch (kind) {
        case DotRole::Kind::swipe:
            return "swipe";
        case DotRole::Kind::rest:
            return "rest";
        case DotRole::Kind::tap:
            return "tap";
        case DotRole::Kind::doubleTap:
            return "doubleTap";
        case DotRole::Kind::press:
            return "press";
        case DotRole::Kind::lift:
            return "lift";
    }
    return "";
}

const std::vector<GestureGroup>& GestureCatalog::allGroups() {
    static const std::vector<GestureGroup> groups = buildAllGroups();
    return groups;
}

const std::set<std::string, std::less<>>& GestureCatalog::enabled() {
    // Three-finger rest swipes and the "lift all but one" family are known but not offered.
    static const std::set<std::string, std::less<>> ids{
        "2.restTap.left",
        "2.restTap.right",
        "2.restSwipe.down.left",
        "2.restSwipe.up.left",
        "2.restSwipe.down.right",
        "2.restSwipe.up.right",
        "3.click",
        "3.tap",
        "3.restTap.between",
        "3.restTap.left",
        "3.restTap.right",
        "3.swipe.up",
        "3.swipe.down",
        "3.swipe.left",
        "3.swipe.right",
        "4.tap",
        "4.doubleTap",
        "4.click",
        "4.swipe.up",
        "4.swipe.down",
        "4.swipe.left",
        "4.swipe.right",
        "5.tap",
        "5.doubleTap",
        "5.click",
        "5.swipe.up",
        "5.swipe.down",
        "5.swipe.left",
        "5.swipe.right",
    };
    return ids;
}

const std::vector<GestureGroup>& GestureCatalog::groups() {
    static const std::vector<GestureGroup> filtered = [] {
        std::vector<GestureGroup> result = allGroups();
        for (GestureGroup& group : result) {
            std::erase_if(group.gestures, [](const GestureDef& def) { return !enabled().contains(def.id); });
        }
        return result;
    }();
    return filtered;
}

const std::vector<Gesture>& GestureCatalog::all() {
    static const std::vector<Gesture> gestures = [] {
        std::vector<Gesture> result;
        for (const GestureGroup& group : groups()) {
            for (const GestureDef& def : group.gestures) result.emplace_back(def.id);
        }
        return result;
    }();
    return gestures;
}

const GestureCatalog::IDMap& GestureCatalog::byID() {
    static const IDMap map = [] {
        IDMap result;
        for (const GestureGroup& group : allGroups()) {
            for (const GestureDef& def : group.gestures) result.emplace(def.id, def);
        }
        return result;
    }();
    return map;
}

const GestureCatalog::OrderMap& GestureCatalog::order() {
    static const OrderMap map = [] {
        OrderMap result;
        int position = 0;
        for (const GestureGroup& group : allGroups()) {
            for (const GestureDef& def : group.gestures) result.emplace(def.id, position++);
        }
        return result;
    }();
    return map;
}

bool GestureCatalog::isEnabled(const Gesture& gesture) {
    return gesture.custom.has_value() || enabled().contains(gesture.id);
}

const GestureDef* GestureCatalog::find(std::string_view id) {
    const IDMap& map = byID();
    const auto it = map.find(id);
    return it == map.end() ? nullptr : &it->second;
}

const Gesture* GestureCatalog::known(std::string_view id) {
    static const std::map<std::string, Gesture, std::less<>> gestures = [] {
        std::map<std::string, Gesture, std::less<>> result;
        for (const auto& [key, def] : byID()) result.emplace(key, Gesture(key));
        return result;
    }();
    const auto it = gestures.find(id);
    return it == gestures.end() ? nullptr : &it->second;
}

std::string GestureCatalog::fingersText(int fingers) {
    return asciiLowercased(Gesture::word(fingers)) + " fingers";
}

std::vector<Dot> GestureCatalog::dots(int fingers, DotRole role) {
    std::vector<Dot> result;
    for (const Position& p : handRow(fingers)) result.push_back({p[0], p[1], role});
    return result;
}

}  // namespace ostrelle
