#include "takes.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace ostrelle::examples {
namespace {

// A new take starts at least this long after the previous one ended, so the recognizer does not
// take it for the same session coming back after a dropout (that window is 15 ms).
constexpr double minimumGap = 0.03;         // s
constexpr double landingStagger = 0.03;     // s: fingers of one hand land within this
constexpr double liftStagger = 0.03;        // s: and lift within this
constexpr double placementSpread = 0.01;    // units: a hand never lands twice in the same spot
constexpr double fingertipRoll = 0.004;     // units: a still fingertip still rolls this much
constexpr double tapHoldMin = 0.09;         // s
constexpr double tapHoldMax = 0.13;         // s
constexpr double pressAfterMin = 0.16;      // s: from landing to the click
constexpr double pressAfterMax = 0.22;      // s
constexpr double releaseAfterMin = 0.08;    // s: from the click to lifting
constexpr double releaseAfterMax = 0.14;    // s
constexpr double pressFlatten = 0.003;      // units: fingertips spread a little when pressing
constexpr double settleMin = 0.03;          // s: pause between landing and moving
constexpr double settleMax = 0.06;          // s
constexpr double swipeDurationMin = 0.18;   // s
constexpr double swipeDurationMax = 0.24;   // s
constexpr double swipeLengthSpread = 0.08;  // share: each finger's travel differs by up to this
constexpr double swipeSideways = 0.08;      // share of the travel a finger strays sideways
constexpr double restLeadMin = 0.28;        // s: from the rest landing to the tap landing
constexpr double restLeadMax = 0.38;        // s
constexpr double restStayMin = 0.2;         // s: rests stay down this long after the tap lifts
constexpr double restStayMax = 0.3;         // s
constexpr double moverLeadMin = 0.2;        // s: from the rest landing to the slider landing
constexpr double moverLeadMax = 0.3;        // s
constexpr double slideLengthMin = 0.2;      // units
constexpr double slideLengthMax = 0.26;     // units
constexpr double pointerDuration = 0.5;     // s
constexpr double scrollDuration = 0.3;      // s

Point operator+(Point a, Point b) {
    return {a.x + b.x, a.y + b.y};
}
Point operator*(double s, Point p) {
    return {s * p.x, s * p.y};
}

// Where the fingertips of a relaxed hand sit around its centre, left to right; the fifth is the thumb.
const std::vector<Point>& handOffsets(int fingers) {
    static const std::vector<std::vector<Point>> layouts{
        {{0, 0}},
        {{-0.05, 0.01}, {0.05, -0.01}},
        {{-0.08, 0.02}, {0.0, -0.02}, {0.08, 0.0}},
        {{-0.11, 0.04}, {-0.04, -0.02}, {0.035, -0.03}, {0.11, 0.01}},
        {{-0.09, -0.01}, {-0.03, -0.05}, {0.04, -0.05}, {0.1, -0.01}, {-0.15, 0.12}},
    };
    if (fingers < 1 || fingers > static_cast<int>(layouts.size())) throw std::logic_error("1 to 5 fingers");
    return layouts[static_cast<std::size_t>(fingers - 1)];
}

Point jittered(Noise& noise, Point p, double spread) {
    return {p.x + noise.between(-spread, spread), p.y + noise.between(-spread, spread)};
}

double startOf(const Performer& performer) {
    return performer.now() + minimumGap;
}

FingerPlan landFinger(Performer& performer, Point at, double down) {
    return {performer.newFingerID(), down, down, {{down, at}}};
}

// Moments at which the fingers of one hand land, or lift: one leads and the others follow within
// `spread`, at least a frame later, so the trackpad sees them arrive one after another.
std::vector<double> staggered(Noise& noise, std::size_t count, double from, double spread) {
    std::vector<double> times(count);
    const std::size_t leader = static_cast<std::size_t>(noise.next() % count);
    for (std::size_t i = 0; i < count; ++i) {
        times[i] = i == leader ? from : from + noise.between(Performer::frameInterval, spread);
    }
    return times;
}

void liftAt(std::vector<FingerPlan>& hand, const std::vector<double>& times) {
    for (std::size_t i = 0; i < hand.size(); ++i) hand[i].up = times[i];
}

// A hand lands around a centre: each finger at its place in the hand, at a slightly different moment.
std::vector<FingerPlan> landHand(Performer& performer, int fingers, Point centre, double base) {
    const std::vector<Point>& offsets = handOffsets(fingers);
    const std::vector<double> downs = staggered(performer.noise(), offsets.size(), base, landingStagger);
    std::vector<FingerPlan> hand;
    for (std::size_t i = 0; i < offsets.size(); ++i) {
        const Point at = jittered(performer.noise(), centre + offsets[i], placementSpread);
        hand.push_back(landFinger(performer, at, downs[i]));
    }
    return hand;
}

double lastLanding(const std::vector<FingerPlan>& hand) {
    double last = 0;
    for (const FingerPlan& finger : hand) last = std::max(last, finger.down);
    return last;
}

// The finger stays where it is, give or take a roll of the fingertip, and lifts at `up`.
void holdUntil(Noise& noise, FingerPlan& finger, double up) {
    finger.path.push_back({up, jittered(noise, finger.path.back().at, fingertipRoll)});
    finger.up = up;
}

Take moveHand(Performer& performer, std::vector<FingerPlan> hand, Point travel, double duration) {
    Noise& noise = performer.noise();
    const double moveStart = lastLanding(hand) + noise.between(settleMin, settleMax);
    const double moveEnd = moveStart + duration;
    const double length = std::hypot(travel.x, travel.y);
    const Point sideways{-travel.y / length, travel.x / length};
    for (FingerPlan& finger : hand) {
        const Point start = finger.path.back().at;
        const Point delta = noise.between(1 - swipeLengthSpread, 1 + swipeLengthSpread) * travel +
                            noise.between(-swipeSideways, swipeSideways) * length * sideways;
        finger.path.push_back({moveStart, start});
        finger.path.push_back({moveEnd, start + delta});
    }
    // Fingers leave the pad as the motion runs out, some just before it stops.
    liftAt(hand, staggered(noise, hand.size(), moveEnd - liftStagger / 2, liftStagger));
    return {std::move(hand), {}};
}

}  // namespace

Take tap(Performer& performer, int fingers, Point centre) {
    Noise& noise = performer.noise();
    const double base = startOf(performer);
    std::vector<FingerPlan> hand = landHand(performer, fingers, centre, base);
    const double lift = base + noise.between(tapHoldMin, tapHoldMax);
    const std::vector<double> lifts = staggered(noise, hand.size(), lift, liftStagger);
    for (std::size_t i = 0; i < hand.size(); ++i) holdUntil(noise, hand[i], lifts[i]);
    return {std::move(hand), {}};
}

Take click(Performer& performer, int fingers, Point centre) {
    Noise& noise = performer.noise();
    const double base = startOf(performer);
    std::vector<FingerPlan> hand = landHand(performer, fingers, centre, base);
    const double press = base + noise.between(pressAfterMin, pressAfterMax);
    const double release = press + noise.between(releaseAfterMin, releaseAfterMax);
    for (FingerPlan& finger : hand) {
        const Point at = finger.path.back().at;
        finger.path.push_back({press - Performer::frameInterval, at});
        finger.path.push_back({press + Performer::frameInterval, jittered(noise, at, pressFlatten)});
    }
    liftAt(hand, staggered(noise, hand.size(), release, liftStagger));
    return {std::move(hand), {press}};
}

Take swipe(Performer& performer, int fingers, Point centre, SwipeDirection direction, double distance) {
    const double base = startOf(performer);
    std::vector<FingerPlan> hand = landHand(performer, fingers, centre, base);
    const double duration = performer.noise().between(swipeDurationMin, swipeDurationMax);
    return moveHand(performer, std::move(hand), distance * unitVector(direction), duration);
}

Take restTap(Performer& performer, int fingers, Point restCentre, Side side) {
    Noise& noise = performer.noise();
    const double base = startOf(performer);
    std::vector<Point> rests;
    Point tapAt = restCentre;
    if (fingers == 2) {
        if (side == Side::between) throw std::logic_error("one resting finger has no between");
        rests.push_back(restCentre);
        const double gap = noise.between(0.1, 0.15);
        tapAt = restCentre + Point{side == Side::left ? -gap : gap, noise.between(-0.04, 0.02)};
    } else if (fingers == 3) {
        const double spread = noise.between(0.07, 0.09);
        const double reach = noise.between(0.07, 0.1);
        switch (side) {
            case Side::left:
                rests = {restCentre, restCentre + Point{spread, -0.02}};
                tapAt = restCentre + Point{-reach, 0.03};
                break;
            case Side::right:
                rests = {restCentre + Point{-spread, 0.01}, restCentre};
                tapAt = restCentre + Point{reach, 0.02};
                break;
            case Side::between:
                rests = {restCentre + Point{-spread, 0.02}, restCentre + Point{spread, 0.0}};
                tapAt = restCentre + Point{noise.between(-0.02, 0.02), -0.03};
                break;
        }
    } else {
        throw std::logic_error("rest taps use two or three fingers");
    }

    std::vector<FingerPlan> fingersDown;
    const std::vector<double> downs = staggered(noise, rests.size(), base, landingStagger);
    for (std::size_t i = 0; i < rests.size(); ++i) {
        fingersDown.push_back(
            landFinger(performer, jittered(noise, rests[i], placementSpread / 2), downs[i]));
    }
    const double tapDown = base + noise.between(restLeadMin, restLeadMax);
    const double tapUp = tapDown + noise.between(tapHoldMin, tapHoldMax);
    for (FingerPlan& rest : fingersDown)
        holdUntil(noise, rest, tapUp + noise.between(restStayMin, restStayMax));
    FingerPlan tapper = landFinger(performer, jittered(noise, tapAt, placementSpread / 2), tapDown);
    holdUntil(noise, tapper, tapUp);
    fingersDown.push_back(std::move(tapper));
    return {std::move(fingersDown), {}};
}

Take restSwipe(Performer& performer, Point rest, Side side, SwipeDirection direction) {
    if (direction != SwipeDirection::up && direction != SwipeDirection::down) {
        throw std::logic_error("rest swipes go up or down");
    }
    if (side == Side::between) throw std::logic_error("one resting finger has no between");
    Noise& noise = performer.noise();
    const double base = startOf(performer);
    const Point along = unitVector(direction);
    FingerPlan rester = landFinger(performer, rest, base);

    // The sliding finger lands a little behind the rest, on its side, then slides past it.
    const double gap = noise.between(0.1, 0.14);
    const Point landing = rest + Point{side == Side::left ? -gap : gap, -noise.between(0.03, 0.06) * along.y};
    const double moverDown = base + noise.between(moverLeadMin, moverLeadMax);
    FingerPlan mover = landFinger(performer, landing, moverDown);
    const double slideStart = moverDown + noise.between(settleMin, settleMax);
    const double slideEnd = slideStart + noise.between(swipeDurationMin, swipeDurationMax);
    const Point slide{noise.between(-0.025, 0.025), noise.between(slideLengthMin, slideLengthMax) * along.y};
    mover.path.push_back({slideStart, landing});
    mover.path.push_back({slideEnd, landing + slide});
    mover.up = slideEnd + noise.between(0, liftStagger);
    holdUntil(noise, rester, mover.up + noise.between(restStayMin, restStayMax));
    return {{std::move(rester), std::move(mover)}, {}};
}

Take drawing(Performer& performer, int fingers, const std::vector<Point>& figure, double speed) {
    if (figure.size() < 2) throw std::logic_error("a figure needs two corners");
    Noise& noise = performer.noise();
    const double base = startOf(performer);
    std::vector<FingerPlan> hand = landHand(performer, fingers, figure.front(), base);
    double time = lastLanding(hand) + noise.between(settleMin, settleMax);
    for (FingerPlan& finger : hand) finger.path.push_back({time, finger.path.back().at});
    for (std::size_t corner = 1; corner < figure.size(); ++corner) {
        const Point leg{figure[corner].x - figure[corner - 1].x, figure[corner].y - figure[corner - 1].y};
        time += std::hypot(leg.x, leg.y) / speed;
        for (FingerPlan& finger : hand) {
            finger.path.push_back({time, jittered(noise, finger.path.back().at + leg, fingertipRoll)});
        }
    }
    liftAt(hand, staggered(noise, hand.size(), time + 0.01, liftStagger));
    return {std::move(hand), {}};
}

Take pointerMove(Performer& performer, Point from, Point to) {
    const double base = startOf(performer);
    FingerPlan finger = landFinger(performer, from, base);
    finger.path.push_back({base + pointerDuration, to});
    finger.up = base + pointerDuration + performer.noise().between(0.02, 0.06);
    return {{std::move(finger)}, {}};
}

Take scroll(Performer& performer, Point centre, SwipeDirection direction, double distance) {
    const double base = startOf(performer);
    std::vector<FingerPlan> hand = landHand(performer, 2, centre, base);
    return moveHand(performer, std::move(hand), distance * unitVector(direction), scrollDuration);
}

}  // namespace ostrelle::examples
