// Taps, double taps, physical clicks and rest taps.
#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "gestures/gesture_catalog.h"
#include "recognition/gesture_id_buffer.h"
#include "recognition/gesture_recognizer.h"
#include "recognition/length_compare.h"
#include "recognition/recognizer_trace.h"

namespace ostrelle {

std::optional<Gesture> GestureRecognizer::tapOrDoubleTap(double time) {
    const std::vector<TrackEntry>& tracks = session_.tracks;
    if (tracks.empty()) return std::nullopt;
    const int n = session_.peak;

    auto reject = [n]<typename... Args>(fmt::format_string<Args...> reason, Args&&... args) {
        recognizer_trace::tapRejected(n, reason, std::forward<Args>(args)...);
        return std::optional<Gesture>();
    };

    const double duration = time - session_.sessionStart;
    if (duration > tapMaxDuration) return reject("held {:.2f} s", duration);

    double largestMove = 0;
    double firstLanding = tracks.front().track.startTime;
    double lastLanding = firstLanding;
    std::optional<double> firstLift;
    std::optional<double> lastLift;
    for (const TrackEntry& entry : tracks) {
        const Track& t = entry.track;
        largestMove = std::max(largestMove, t.maxMove);
        firstLanding = std::min(firstLanding, t.startTime);
        lastLanding = std::max(lastLanding, t.startTime);
        if (t.endTime) {
            firstLift = firstLift ? std::min(*firstLift, *t.endTime) : *t.endTime;
            lastLift = lastLift ? std::max(*lastLift, *t.endTime) : *t.endTime;
        }
    }
    if (largestMove >= tapMaxMove) return reject("moved {:.3f}", largestMove);
    // literal 0.15: the largest landing spread of a plain tap
    const double landingSpread = lastLanding - firstLanding;
    if (landingSpread >= 0.15) return reject("landed {:.3f} s apart", landingSpread);
    const double liftSpread = lastLift ? *lastLift - *firstLift : 0;
    if (liftSpread > groupWindow) return reject("lifted {:.3f} s apart", liftSpread);

    if (lastTap_ && lastTap_->fingers == n && time - lastTap_->time <= doubleTapWindow) {
        if (auto doubleTap = known(GestureIDBuffer::generic(n, Motion::doubleTap, std::nullopt).view())) {
            lastTap_.reset();
            return doubleTap;
        }
    }
    // Armed before the lookup, so that an unbound single tap can still start a double tap.
    lastTap_ = TapRecord{n, time};
    return known(GestureIDBuffer::generic(n, Motion::tap, std::nullopt).view());
}

std::optional<Gesture> GestureRecognizer::physicalClick() {
    if (touching_ < 3 || session_.consumed) return std::nullopt;
    // A press ends the session's chances of any other gesture, bound or not.
    session_.consumed = true;
    return known(GestureIDBuffer::generic(touching_, Motion::click, std::nullopt).view());
}

std::optional<Gesture> GestureRecognizer::restTap(const Track& tap,
                                                  std::span<const Track* const> rests) const {
    if (tap.isOpen() || tap.spent) return std::nullopt;

    const std::size_t fingers = rests.size() + 1;
    auto reject = [fingers]<typename... Args>(fmt::format_string<Args...> reason, Args&&... args) {
        recognizer_trace::restTapRejected(fingers, reason, std::forward<Args>(args)...);
        return std::optional<Gesture>();
    };

    if (session_.scrolled) return reject("two fingers scrolled earlier this session");
    // literal 0.03: resting fingers that all slid this far one way were moving, not resting
    if (movedTogether(rests, 0.03, Reference::anchor)) return reject("resting fingers slid together");
    const double held = *tap.endTime - tap.startTime;
    if (held > restTapMaxDuration) return reject("tap held {:.2f} s", held);
    if (tap.maxMove >= restTapMaxMove) return reject("tap moved {:.3f}", tap.maxMove);
    for (const Track* rest : rests) {
        // literal 0.12: deliberately more lenient than restMaxMove, a resting hand sways while another finger
        // taps
        if (rest->drift >= 0.12) return reject("rest drifted {:.3f}", rest->drift);
    }
    for (const Track* rest : rests) {
        const double lead = tap.startTime - rest->startTime;
        if (lead < restMinHold) {
            return reject("rest held {:.3f} s before the tap (min {:.2f})", lead, restMinHold);
        }
    }

    const double tapX = tap.start.x;
    if (rests.size() == 1) {
        const Track& rest = *rests.front();
        const double dx = tapX - rest.last.x;
        // literal 0.03: the least gap between tap and rest
        if (std::abs(dx) < 0.03) return reject("tap {:.3f} from the resting finger", std::abs(dx));
        const double apartX = tapX - rest.last.x;
        const double apartY = tap.start.y - rest.last.y;
        // literal 0.3: the farthest a tap may be from its resting finger
        if (!shorterThan(apartX, apartY, 0.3)) {
            return reject("tap {:.3f} from the resting finger (max {:.1f})", std::hypot(apartX, apartY), 0.3);
        }
        return known(dx < 0 ? "2.restTap.left" : "2.restTap.right");
    }
    if (rests.size() == 2) {
        const double a = std::min(rests[0]->last.x, rests[1]->last.x);
        const double b = std::max(rests[0]->last.x, rests[1]->last.x);
        if (tapX < a) return known("3.restTap.left");
        if (b < tapX) return known("3.restTap.right");
        return known("3.restTap.between");
    }
    return std::nullopt;
}

}  // namespace ostrelle
