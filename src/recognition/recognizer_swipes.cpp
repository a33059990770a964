// Swipes, rest swipes, hold-three-lift-two and its slide, deferred swipes and custom shapes.
#include <algorithm>
#include <cmath>
#include <limits>

#include "gestures/gesture_catalog.h"
#include "recognition/gesture_id_buffer.h"
#include "recognition/gesture_recognizer.h"
#include "recognition/length_compare.h"
#include "recognition/shape_matching.h"

namespace ostrelle {
namespace {

// A finger counts as moved in a swipe when its own displacement is longer than this.
// literal 0.03: the same number as tapMaxMove, written out on purpose
constexpr double swipeFingerMinMove = 0.03;

}  // namespace

std::optional<Gesture> GestureRecognizer::slideAfterHoldThree() {
    if (!session_.removedAt || open_.size() != 1) return std::nullopt;
    const Contact& now = open_.front()->last;
    const double dx = now.x - session_.removedAt->x;
    const double dy = now.y - session_.removedAt->y;
    if (!longerThan(dx, dy, swipeMinMove)) return std::nullopt;
    GestureIDBuffer id;
    id.word("3.restRemove").component(rawValue(directionOf(dx, dy)));
    auto slide = known(id.view());
    if (slide) session_.consumed = true;
    return slide;
}

std::optional<std::optional<Gesture>> GestureRecognizer::swipeByMean() {
    const std::size_t n = open_.size();
    if (n < 3 || static_cast<int>(n) != session_.peak) return std::nullopt;
    if (std::any_of(open_.begin(), open_.end(), [](const Track* t) { return t->spent; })) return std::nullopt;

    double sumX = 0;
    double sumY = 0;
    for (const Track* t : open_) {
        sumX += t->dx();
        sumY += t->dy();
    }
    const double meanX = sumX / static_cast<double>(n);
    const double meanY = sumY / static_cast<double>(n);
    const SwipeDirection direction = directionOf(meanX, meanY);

    auto agrees = [&](const Track* t) { return directionOf(t->dx(), t->dy()) == direction; };
    auto moved = [](const Track* t) { return longerThan(t->dx(), t->dy(), swipeFingerMinMove); };

    bool accepted = false;
    if (n == 3) {
        accepted =
            longerThan(meanX, meanY, threeSwipeMinMove) &&
            std::all_of(open_.begin(), open_.end(), [&](const Track* t) { return moved(t) && agrees(t); });
    } else {
        accepted =
            longerThan(meanX, meanY, handSwipeMinMove) &&
            std::all_of(open_.begin(), open_.end(), [&](const Track* t) { return !moved(t) || agrees(t); });
    }
    const int fingers = static_cast<int>(n);
    std::optional<Gesture> swipe;
    if (accepted) swipe = known(GestureIDBuffer::generic(fingers, Motion::swipe, direction).view());
    if (swipe) return plainSwipe(*swipe);
    // Three fingers may still be a rest swipe; four or five fingers wait for a later frame.
    if (n == 3) return std::nullopt;
    return std::optional<Gesture>();
}

std::optional<Gesture> GestureRecognizer::restSwipe() {
    const std::size_t down = open_.size();
    if (down != 2 && down != 3) return std::nullopt;

    scratch_.clear();  // the movers
    const Track* rester = nullptr;
    std::size_t resters = 0;
    for (const Track* t : open_) {
        if (longerThan(t->dx(), t->dy(), swipeMinMove)) {
            scratch_.push_back(t);
        } else if (t->drift < restMaxMove) {
            rester = t;
            ++resters;
        } else {
            return std::nullopt;  // neither moving nor resting
        }
    }
    if (scratch_.empty()) return std::nullopt;
    if (std::any_of(scratch_.begin(), scratch_.end(), [](const Track* t) { return t->spent; }))
        return std::nullopt;
    const SwipeDirection direction = directionOf(scratch_.front()->dx(), scratch_.front()->dy());
    for (const Track* mover : scratch_) {
        if (directionOf(mover->dx(), mover->dy()) != direction) return std::nullopt;
    }

    if (resters == 0) {
        if (down < 3 || static_cast<int>(down) != session_.peak) return std::nullopt;
        auto swipe = known(GestureIDBuffer::generic(static_cast<int>(down), Motion::swipe, direction).view());
        if (!swipe) return std::nullopt;
        return plainSwipe(*swipe);
    }
    if (resters > 1) return std::nullopt;

    double landingX = 0;
    for (const Track* mover : scratch_) {
        if (mover->startTime - rester->startTime < groupWindow) return std::nullopt;
        landingX += mover->start.x;
    }
    if (scratch_.size() == 1) {
        const Track& mover = *scratch_.front();
        if (!shorterThan(mover.start.x - rester->last.x, mover.start.y - rester->last.y, groupMaxGap)) {
            return std::nullopt;
        }
    }
    landingX /= static_cast<double>(scratch_.size());
    // The side is where the sliding fingers are, seen from the resting finger.
    const std::string_view side = rester->last.x <= landingX ? "right" : "left";
    GestureIDBuffer id;
    id.number(static_cast<int>(down)).word(".restSwipe").component(rawValue(direction)).component(side);
    auto gesture = known(id.view());
    if (!gesture) return std::nullopt;
    for (TrackEntry& entry : session_.tracks) {
        if (entry.track.isOpen() && longerThan(entry.track.dx(), entry.track.dy(), swipeMinMove)) {
            entry.track.spent = true;
        }
    }
    // Rest swipes fire at once: the resting finger already tells them apart from a drawn shape.
    session_.used = true;
    return gesture;
}

void GestureRecognizer::holdThreeLiftTwo() {
    if (session_.peak != 3 || open_.size() != 1 || session_.tracks.size() != 3 || session_.used) return;
    for (const TrackEntry& entry : session_.tracks) {
        const Track& t = entry.track;
        if (!(t.drift < restMaxMove)) return;
        // A brief lift is a rest tap, not the start of this gesture.
        if (t.endTime && *t.endTime - t.startTime <= tapMaxDuration) return;
    }
    for (const TrackEntry& entry : session_.tracks) {
        if (entry.track.isOpen()) session_.removedAt = entry.track.last;
    }
}

std::optional<Gesture> GestureRecognizer::plainSwipe(const Gesture& gesture) {
    const int fingers = gesture.fingers();
    const bool shapeMayBeMeant =
        recordingShapes ||
        std::any_of(customs.begin(), customs.end(), [&](const Gesture& c) { return c.fingers() == fingers; });
    if (!shapeMayBeMeant) {
        session_.consumed = true;
        return gesture;
    }
    session_.deferred = gesture;
    return std::nullopt;
}

std::optional<Gesture> GestureRecognizer::customShapeStep() {
    const std::vector<Point>& path = session_.handPath;
    const int n = session_.peak;
    const double length = shapes::length(path);

    if (length >= shapes::minLength) {
        const std::vector<Point> drawn = shapes::templateOf(path);
        const Gesture* best = nullptr;
        double bestDistance = std::numeric_limits<double>::infinity();
        for (const Gesture& candidate : customs) {
            if (!candidate.custom || candidate.custom->fingers != n) continue;
            const double d = shapes::distance(*candidate.custom, drawn);
            // Strictly smaller: on a tie the shape earlier in the list keeps the match.
            if (d < bestDistance) {
                bestDistance = d;
                best = &candidate;
            }
        }
        if (best && bestDistance < shapes::maxDistance) return *best;
    }

    if (session_.deferred) {
        const auto def = session_.deferred->def();
        if (!path.empty() && shapes::isStraight(path) && def && def->direction) {
            const Point chord{path.back().x - path.front().x, path.back().y - path.front().y};
            if (directionOf(chord.x, chord.y) == *def->direction) return session_.deferred;
        }
    }

    if (recordingShapes && n >= 3 && n <= 5 && length >= shapes::minLength) {
        return Gesture::newCustom(shapes::fromDrawing(n, path, liveStrokes()));
    }
    return std::nullopt;
}

}  // namespace ostrelle
