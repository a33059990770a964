#include "performer.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace ostrelle::examples {
namespace {

// Sensor jitter: a slowly wandering offset (a fingertip rolls a little) plus a small
// frame-to-frame flicker, together a few thousandths of a unit.
constexpr double wanderAmplitude = 0.006;   // units: bound of each wander step
constexpr double wanderSmoothing = 0.75;    // share of the previous offset kept each frame
constexpr double flickerAmplitude = 0.001;  // units
constexpr double edgeMargin = 0.002;        // units: contacts stay this far inside the pad

double smoothstep(double u) {
    return u * u * (3.0 - 2.0 * u);
}

struct Jitter {
    Noise noise;
    Point wander;

    Point next() {
        wander.x =
            wanderSmoothing * wander.x + (1.0 - wanderSmoothing) * noise.between(-1, 1) * wanderAmplitude;
        wander.y =
            wanderSmoothing * wander.y + (1.0 - wanderSmoothing) * noise.between(-1, 1) * wanderAmplitude;
        return {wander.x + noise.between(-1, 1) * flickerAmplitude,
                wander.y + noise.between(-1, 1) * flickerAmplitude};
    }
};

double onPad(double value) {
    return std::clamp(value, edgeMargin, 1.0 - edgeMargin);
}

}  // namespace

Point plannedPosition(const FingerPlan& finger, double time) {
    const auto& path = finger.path;
    if (path.empty()) throw std::logic_error("a finger needs at least one waypoint");
    if (time <= path.front().time) return path.front().at;
    for (std::size_t i = 1; i < path.size(); ++i) {
        const Waypoint& from = path[i - 1];
        const Waypoint& to = path[i];
        if (time < to.time) {
            const double u = smoothstep((time - from.time) / (to.time - from.time));
            return {from.at.x + u * (to.at.x - from.at.x), from.at.y + u * (to.at.y - from.at.y)};
        }
    }
    return path.back().at;
}

Performer::Performer(std::uint64_t seed) : noise_(seed) {}

std::vector<RecordedFrame> Performer::sample(const Take& take) {
    if (take.fingers.empty()) throw std::logic_error("a take needs fingers");
    double firstDown = take.fingers.front().down;
    double lastUp = take.fingers.front().up;
    for (const FingerPlan& finger : take.fingers) {
        firstDown = std::min(firstDown, finger.down);
        lastUp = std::max(lastUp, finger.up);
    }
    if (firstDown < now_) throw std::logic_error("a take starts before the previous one ended");

    std::vector<Jitter> jitters;
    for (std::size_t i = 0; i < take.fingers.size(); ++i) jitters.push_back({noise_.fork(), {}});

    // Frames fall on one fixed grid for the whole recording, so landings snap to the next frame.
    auto index = static_cast<std::int64_t>(std::ceil((firstDown - startTime) / frameInterval - 1e-9));
    index = std::max(index, frameIndex_ + 1);
    std::vector<RecordedFrame> frames;
    for (;; ++index) {
        const double time = startTime + static_cast<double>(index) * frameInterval;
        RecordedFrame frame{time, {}};
        for (std::size_t i = 0; i < take.fingers.size(); ++i) {
            const FingerPlan& finger = take.fingers[i];
            if (time < finger.down || time >= finger.up) continue;
            const Point planned = plannedPosition(finger, time);
            const Point offset = jitters[i].next();
            frame.contacts.push_back({finger.id, onPad(planned.x + offset.x), onPad(planned.y + offset.y)});
        }
        const bool done = frame.contacts.empty() && time >= lastUp;
        if (frame.contacts.empty() && !done) {
            if (frames.empty()) continue;  // the first landing is still ahead
            throw std::logic_error("every finger lifted in the middle of a take");
        }
        frames.push_back(std::move(frame));
        if (done) break;
    }
    frameIndex_ = index;
    now_ = frames.back().time;
    return frames;
}

void Performer::perform(const std::string& label, const Take& take,
                        const std::vector<std::string>& expected) {
    lines_.emplace_back(std::in_place_type<CommentLine>, CommentLine{label});
    std::vector<double> clicks = take.clicks;
    std::sort(clicks.begin(), clicks.end());
    auto click = clicks.begin();
    for (RecordedFrame& frame : sample(take)) {
        // A press reaches the program between the frames around it.
        for (; click != clicks.end() && *click < frame.time; ++click)
            lines_.emplace_back(std::in_place_type<RecordedClick>, RecordedClick{*click, false});
        lines_.emplace_back(std::in_place_type<RecordedFrame>, std::move(frame));
    }
    for (; click != clicks.end(); ++click)
        lines_.emplace_back(std::in_place_type<RecordedClick>, RecordedClick{*click, false});
    expected_.insert(expected_.end(), expected.begin(), expected.end());
}

}  // namespace ostrelle::examples
