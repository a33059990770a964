#include "example_scripts.h"

#include <fmt/format.h>

#include <array>

#include "drawn_shape.h"
#include "gestures/gesture_catalog.h"
#include "takes.h"

namespace ostrelle::examples {
namespace {

constexpr double pauseMin = 0.6;             // s: a person pauses between gestures at least this long
constexpr double pauseMax = 1.0;             // s
constexpr double doubleTapPauseMin = 0.06;   // s: between the two taps of a double tap
constexpr double doubleTapPauseMax = 0.1;    // s
constexpr double threeSwipeDistance = 0.26;  // units: three fingers travel further than a whole hand
constexpr double handSwipeDistance = 0.22;   // units
constexpr Point padCentre{0.5, 0.5};

// The custom "Zig" shape: a Z drawn with three fingers, left to right, top to bottom.
constexpr int zigFingers = 3;
constexpr double zigSpeed = 0.9;  // units per second along the figure
constexpr const char* zigUUID = "5A3C9E1F-7B2D-4E68-A1F0-C4D2B6E8F013";
constexpr std::uint64_t zigDrawingSeed = 0x5a3c9e1f;

std::vector<Point> zigFigure(Point topLeft, double size) {
    const double height = 0.8 * size;
    return {topLeft,
            {topLeft.x + size, topLeft.y},
            {topLeft.x, topLeft.y + height},
            {topLeft.x + size, topLeft.y + height}};
}

void pause(Performer& performer) {
    performer.idle(performer.noise().between(pauseMin, pauseMax));
}

std::string word(int fingers) {
    return GestureCatalog::fingersText(fingers);
}

std::string id(int fingers, std::string_view rest) {
    return fmt::format("{}.{}", fingers, rest);
}

// Starts a swipe so that the hand ends as far past the centre as it started before it.
Point swipeStart(SwipeDirection direction, double distance) {
    switch (direction) {
        case SwipeDirection::up:
            return {padCentre.x, padCentre.y + distance / 2};
        case SwipeDirection::down:
            return {padCentre.x, padCentre.y - distance / 2};
        case SwipeDirection::left:
            return {padCentre.x + distance / 2, padCentre.y};
        case SwipeDirection::right:
            return {padCentre.x - distance / 2, padCentre.y};
    }
    return padCentre;
}

void tapWith(Performer& performer, int fingers) {
    performer.perform(word(fingers) + " tap", tap(performer, fingers, padCentre), {id(fingers, "tap")});
}

void doubleTapWith(Performer& performer, int fingers) {
    performer.perform(word(fingers) + " tap", tap(performer, fingers, padCentre), {id(fingers, "tap")});
    performer.idle(performer.noise().between(doubleTapPauseMin, doubleTapPauseMax));
    performer.perform("and again, quickly", tap(performer, fingers, padCentre), {id(fingers, "doubleTap")});
}

void clickWith(Performer& performer, int fingers) {
    performer.perform(word(fingers) + " press the pad down", click(performer, fingers, {0.5, 0.55}),
                      {id(fingers, "click")});
}

void swipeWith(Performer& performer, int fingers, SwipeDirection direction) {
    const double distance = fingers == 3 ? threeSwipeDistance : handSwipeDistance;
    performer.perform(fmt::format("{} swipe {}", word(fingers), rawValue(direction)),
                      swipe(performer, fingers, swipeStart(direction, distance), direction, distance),
                      {Gesture::genericID(fingers, Motion::swipe, direction)});
}

void swipesWith(Performer& performer, int fingers) {
    for (SwipeDirection direction : allSwipeDirections) {
        swipeWith(performer, fingers, direction);
        pause(performer);
    }
}

std::string sideName(Side side) {
    switch (side) {
        case Side::left:
            return "left";
        case Side::right:
            return "right";
        case Side::between:
            return "between";
    }
    return "";
}

void restTapWith(Performer& performer, int fingers, Side side) {
    const std::string rests = fingers == 2 ? "one finger rests" : "two fingers rest";
    performer.perform(fmt::format("{}, another taps {}", rests,
                                  side == Side::between ? "between them" : "on the " + sideName(side)),
                      restTap(performer, fingers, {0.5, 0.5}, side),
                      {id(fingers, "restTap." + sideName(side))});
}

void restSwipeWith(Performer& performer, SwipeDirection direction, Side side) {
    const Point rest = direction == SwipeDirection::down ? Point{0.52, 0.45} : Point{0.52, 0.6};
    performer.perform(
        fmt::format("one finger rests, another slides {} on its {}", rawValue(direction), sideName(side)),
        restSwipe(performer, rest, side, direction),
        {fmt::format("2.restSwipe.{}.{}", rawValue(direction), sideName(side))});
}

std::vector<Gesture> zigShapes() {
    // The shape comes from a drawing of its own, smaller and elsewhere on the pad, as the user
    // drew it in the editor; the recording then has to match it.
    Performer drawer(zigDrawingSeed);
    const CustomShape shape = shapeFromFrames(
        zigFingers, drawer.sample(drawing(drawer, zigFingers, zigFigure({0.4, 0.35}, 0.22), zigSpeed)));
    return {customGesture(shape, "Zig", zigUUID)};
}

void performZig(Performer& performer) {
    performer.perform("three fingers draw a Z",
                      drawing(performer, zigFingers, zigFigure({0.32, 0.3}, 0.3), zigSpeed),
                      {id(zigFingers, std::string("custom.") + zigUUID)});
    pause(performer);
    // With a three-finger shape around, a three-finger swipe waits for the end of the session:
    // a straight one is still delivered then.
    swipeWith(performer, 3, SwipeDirection::left);
}

void performSession(Performer& performer) {
    performer.perform("the pointer moves (no gesture)", pointerMove(performer, {0.3, 0.6}, {0.55, 0.45}), {});
    pause(performer);
    tapWith(performer, 3);
    pause(performer);
    performer.perform("two fingers scroll down (no gesture)",
                      scroll(performer, {0.5, 0.35}, SwipeDirection::down, 0.3), {});
    pause(performer);
    swipeWith(performer, 4, SwipeDirection::left);
    pause(performer);
    restTapWith(performer, 2, Side::right);
    performer.idle(1.5);
    clickWith(performer, 3);
    pause(performer);
    swipeWith(performer, 5, SwipeDirection::up);
    pause(performer);
    doubleTapWith(performer, 4);
    pause(performer);
    restSwipeWith(performer, SwipeDirection::down, Side::left);
    pause(performer);
    restTapWith(performer, 3, Side::between);
    pause(performer);
    swipeWith(performer, 3, SwipeDirection::right);
}

}  // namespace

const std::vector<ExampleScript>& exampleScripts() {
    static const std::vector<ExampleScript> scripts{
        {"three-finger-tap", "Three fingers tap the pad.", 301, [](Performer& p) { tapWith(p, 3); }, nullptr},
        {"four-finger-tap", "Four fingers tap the pad.", 401, [](Performer& p) { tapWith(p, 4); }, nullptr},
        {"five-finger-tap", "Five fingers (thumb included) tap the pad.", 501,
         [](Performer& p) { tapWith(p, 5); }, nullptr},
        {"four-finger-double-tap", "Four fingers tap twice in quick succession.", 402,
         [](Performer& p) { doubleTapWith(p, 4); }, nullptr},
        {"five-finger-double-tap", "Five fingers tap twice in quick succession.", 502,
         [](Performer& p) { doubleTapWith(p, 5); }, nullptr},
        {"three-finger-click", "Three fingers press the pad down until it clicks.", 303,
         [](Performer& p) { clickWith(p, 3); }, nullptr},
        {"four-finger-click", "Four fingers press the pad down until it clicks.", 403,
         [](Performer& p) { clickWith(p, 4); }, nullptr},
        {"five-finger-click", "Five fingers press the pad down until it clicks.", 503,
         [](Performer& p) { clickWith(p, 5); }, nullptr},
        {"three-finger-swipes", "Three fingers swipe up, down, left and right.", 304,
         [](Performer& p) { swipesWith(p, 3); }, nullptr},
        {"four-finger-swipes", "Four fingers swipe up, down, left and right.", 404,
         [](Performer& p) { swipesWith(p, 4); }, nullptr},
        {"five-finger-swipes", "Five fingers swipe up, down, left and right.", 504,
         [](Performer& p) { swipesWith(p, 5); }, nullptr},
        {"two-finger-rest-taps", "One finger rests while another taps on its left, then on its right.", 205,
         [](Performer& p) {
             restTapWith(p, 2, Side::left);
             pause(p);
             restTapWith(p, 2, Side::right);
         },
         nullptr},
        {"three-finger-rest-taps",
         "Two fingers rest while a third taps on their left, on their right, between them.", 305,
         [](Performer& p) {
             restTapWith(p, 3, Side::left);
             pause(p);
             restTapWith(p, 3, Side::right);
             pause(p);
             restTapWith(p, 3, Side::between);
         },
         nullptr},
        {"two-finger-rest-swipes",
         "One finger rests while another slides down or up beside it, left then right.", 206,
         [](Performer& p) {
             const std::array<std::pair<SwipeDirection, Side>, 4> variants{
                 {{SwipeDirection::down, Side::left},
                  {SwipeDirection::up, Side::left},
                  {SwipeDirection::down, Side::right},
                  {SwipeDirection::up, Side::right}}};
             for (const auto& [direction, side] : variants) {
                 restSwipeWith(p, direction, side);
                 pause(p);
             }
         },
         nullptr},
        {"three-finger-zig", "Three fingers draw the custom shape \"Zig\" (a Z), then swipe left.", 306,
         performZig, zigShapes},
        {"session",
         "A while at the desk: pointing, scrolling and a mix of gestures with pauses between them.", 1,
         performSession, nullptr},
    };
    return scripts;
}

}  // namespace ostrelle::examples
