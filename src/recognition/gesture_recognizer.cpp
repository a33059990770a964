// Frame processing: tracks, strays, sessions, the hand path, and the order in which rules run.
#include "recognition/gesture_recognizer.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "gestures/gesture_catalog.h"
#include "recognition/length_compare.h"
#include "recognition/recognizer_trace.h"
#include "recognition/shape_matching.h"

namespace ostrelle {
namespace {

// Scratch capacity reserved up front; more fingers than this only costs a one-time growth.
constexpr std::size_t expectedContacts = 16;

}  // namespace

// --- TrailSet -------------------------------------------------------------------------------

void GestureRecognizer::TrailSet::clear() {
    for (std::size_t i = 0; i < used_; ++i) slots_[i].points.clear();
    used_ = 0;
}

void GestureRecognizer::TrailSet::append(std::int64_t id, Point point) {
    for (std::size_t i = 0; i < used_; ++i) {
        if (slots_[i].id == id) {
            slots_[i].points.push_back(point);
            return;
        }
    }
    if (used_ == slots_.size()) {
        slots_.emplace_back();
        slots_.back().points.reserve(maxPathPoints);
    }
    Trail& trail = slots_[used_++];
    trail.id = id;
    trail.points.clear();
    trail.points.push_back(point);
}

std::vector<Stroke> GestureRecognizer::TrailSet::strokes() const {
    std::vector<const Trail*> ordered;
    ordered.reserve(used_);
    for (std::size_t i = 0; i < used_; ++i) ordered.push_back(&slots_[i]);
    std::sort(ordered.begin(), ordered.end(), [](const Trail* a, const Trail* b) { return a->id < b->id; });
    std::vector<Stroke> result;
    result.reserve(ordered.size());
    for (const Trail* trail : ordered) result.push_back(trail->points);
    return result;
}

// --- Session --------------------------------------------------------------------------------

void GestureRecognizer::Session::reset() {
    tracks.clear();
    sessionStart = 0;
    peak = 0;
    used = false;
    removedAt.reset();
    consumed = false;
    scrolled = false;
    ignored.clear();
    deferred.reset();
    handPath.clear();
    trails.clear();
    pathPeak = 0;
}

GestureRecognizer::TrackEntry* GestureRecognizer::Session::openEntry(std::int64_t id) {
    for (TrackEntry& entry : tracks) {
        if (entry.id == id && entry.track.isOpen()) return &entry;
    }
    return nullptr;
}

bool GestureRecognizer::Session::hasTrackID(std::int64_t id) const {
    return std::any_of(tracks.begin(), tracks.end(), [id](const TrackEntry& e) { return e.id == id; });
}

bool GestureRecognizer::Session::isIgnored(std::int64_t id) const {
    return std::find(ignored.begin(), ignored.end(), id) != ignored.end();
}

// --- GestureRecognizer ----------------------------------------------------------------------

GestureRecognizer::GestureRecognizer() {
    session_.handPath.reserve(maxPathPoints);
    session_.tracks.reserve(expectedContacts);
    session_.ignored.reserve(expectedContacts);
    frame_.reserve(expectedContacts);
    newIDs_.reserve(expectedContacts);
    lifted_.reserve(expectedContacts);
    groupOf_.reserve(expectedContacts);
    groupSize_.reserve(expectedContacts);
    landing_.reserve(expectedContacts);
    open_.reserve(expectedContacts);
    scratch_.reserve(expectedContacts);
}

std::optional<Gesture> GestureRecognizer::process(std::span<const Contact> contacts, double time) {
    if (session_.tracks.empty() && contacts.empty()) return std::nullopt;

    resuming_ = resumeAfterDropout(contacts, time);
    weedOutStrays(contacts, time);

    touching_ = static_cast<int>(frame_.size());
    if (session_.tracks.empty() && !frame_.empty()) session_.sessionStart = time;

    updateTracks(time);
    resuming_ = false;
    openTracks(open_);

    const int previousPeak = session_.peak;
    session_.peak = std::max(session_.peak, touching_);
    recordHandPath(previousPeak);
    detectScroll();

    if (frame_.empty()) return endFrame(time);
    return fingersStillDown();
}

bool GestureRecognizer::resumeAfterDropout(std::span<const Contact> contacts, double time) {
    if (!session_.tracks.empty() || contacts.empty() || !ended_) return false;
    if (!(time - ended_->time < dropoutWindow)) return false;
    const Session& snapshot = ended_->session;
    const bool returning = std::any_of(contacts.begin(), contacts.end(),
                                       [&](const Contact& c) { return snapshot.hasTrackID(c.id); });
    if (!returning) return false;

    // Swapping instead of copying hands the live session's buffers to the snapshot for reuse.
    std::swap(session_, ended_->session);
    const bool fired = ended_->fired;
    ended_.reset();
    if (fired) {
        // The end frame closed every track, so the fingers that come back get fresh tracks;
        // updateTracks carries this mark over to them so the resumed session fires nothing more.
        session_.used = true;
        for (TrackEntry& entry : session_.tracks) entry.track.spent = true;
    }
    return fired;
}

void GestureRecognizer::weedOutStrays(std::span<const Contact> contacts, double time) {
    frame_.clear();
    for (const Contact& c : contacts) {
        if (!session_.isIgnored(c.id)) frame_.push_back(c);
    }
    const std::size_t count = frame_.size();
    if (count <= 2 || formsOneGroup()) return;

    // Single-linkage clusters in frame order: a contact joins (and merges) every earlier group
    // holding a member closer than groupMaxGap. A group is named by the index of its newest founder,
    // which is also its position in the list of groups.
    groupOf_.resize(count);
    for (std::size_t i = 0; i < count; ++i) {
        groupOf_[i] = i;
        for (std::size_t j = 0; j < i; ++j) {
            if (groupOf_[j] == i) continue;
            if (shorterThan(frame_[i].x - frame_[j].x, frame_[i].y - frame_[j].y, groupMaxGap)) {
                const std::size_t merged = groupOf_[j];
                for (std::size_t k = 0; k < i; ++k) {
                    if (groupOf_[k] == merged) groupOf_[k] = i;
                }
            }
        }
    }
    groupSize_.resize(count);
    for (std::size_t& size : groupSize_) size = 0;
    for (std::size_t i = 0; i < count; ++i) ++groupSize_[groupOf_[i]];

    std::size_t mainGroup = 0;
    std::size_t largest = 0;
    std::size_t groups = 0;
    for (std::size_t g = 0; g < count; ++g) {
        if (groupSize_[g] == 0) continue;
        ++groups;
        if (groupSize_[g] > largest) {
            largest = groupSize_[g];
            mainGroup = g;
        }
    }
    if (groups <= 1) return;
    std::size_t sameSize = 0;
    for (std::size_t g = 0; g < count; ++g) {
        if (groupSize_[g] == largest) ++sameSize;
    }
    if (sameSize > 1) return;

    landing_.resize(count);
    for (std::size_t i = 0; i < count; ++i) {
        const TrackEntry* entry = session_.openEntry(frame_[i].id);
        landing_[i] = entry ? entry->track.startTime : time;
    }
    bool anyStray = false;
    for (std::size_t i = 0; i < count; ++i) {
        if (groupOf_[i] == mainGroup) continue;
        bool together = false;
        for (std::size_t j = 0; j < count && !together; ++j) {
            if (groupOf_[j] == mainGroup) together = std::abs(landing_[i] - landing_[j]) <= groupWindow;
        }
        if (!together) {
            session_.ignored.push_back(frame_[i].id);
            anyStray = true;
        }
    }
    if (anyStray) std::erase_if(frame_, [&](const Contact& c) { return session_.isIgnored(c.id); });
}

// The usual hand: every contact is within reach of an earlier one, so single linkage makes one group
// and there is nothing to weed out. Checking that first keeps the full clustering off the common path.
bool GestureRecognizer::formsOneGroup() const {
    for (std::size_t i = 1; i < frame_.size(); ++i) {
        bool linked = false;
        for (std::size_t j = 0; j < i && !linked; ++j) {
            linked = shorterThan(frame_[i].x - frame_[j].x, frame_[i].y - frame_[j].y, groupMaxGap);
        }
        if (!linked) return false;
    }
    return true;
}

void GestureRecognizer::updateTracks(double time) {
    ++frameNumber_;
    newIDs_.clear();
    for (const Contact& c : frame_) {
        TrackEntry* entry = session_.openEntry(c.id);
        if (!entry) {
            newIDs_.push_back(c.id);
            continue;
        }
        entry->seenInFrame = frameNumber_;
        Track* track = &entry->track;
        track->last = c;
        length_compare::raise(track->maxMove, c.x - track->start.x, c.y - track->start.y);
        length_compare::raise(track->drift, c.x - track->anchor.x, c.y - track->anchor.y);
    }

    if (!newIDs_.empty()) {
        // Drift and displacement count from the moment the last finger landed.
        for (TrackEntry& entry : session_.tracks) {
            if (!entry.track.isOpen()) continue;
            entry.track.anchor = entry.track.last;
            entry.track.drift = 0;
        }
        for (const Contact& c : frame_) {
            if (std::find(newIDs_.begin(), newIDs_.end(), c.id) == newIDs_.end()) continue;
            Track fresh = Track::landed(c, time);
            auto existing = std::find_if(session_.tracks.begin(), session_.tracks.end(),
                                         [&](const TrackEntry& e) { return e.id == c.id; });
            if (existing != session_.tracks.end()) {
                fresh.spent = resuming_ && existing->track.spent;
                existing->track = fresh;
                existing->seenInFrame = frameNumber_;
            } else {
                session_.tracks.push_back({c.id, fresh, frameNumber_});
            }
        }
    }

    lifted_.clear();
    for (std::size_t i = 0; i < session_.tracks.size(); ++i) {
        TrackEntry& entry = session_.tracks[i];
        if (entry.track.isOpen() && entry.seenInFrame != frameNumber_) {
            entry.track.endTime = time;
            lifted_.push_back(i);
        }
    }
}

void GestureRecognizer::recordHandPath(int previousPeak) {
    const int peak = session_.peak;
    if (peak < 3 || peak > 5 || touching_ < previousPeak || frame_.empty()) return;
    if (session_.pathPeak != peak) {
        // A path belongs to one finger count: it restarts when another finger lands.
        session_.handPath.clear();
        session_.trails.clear();
        session_.pathPeak = peak;
    }
    Point centroid;
    for (const Contact& c : frame_) {
        centroid.x += c.x;
        centroid.y += c.y;
    }
    centroid.x /= static_cast<double>(frame_.size());
    centroid.y /= static_cast<double>(frame_.size());

    std::vector<Point>& path = session_.handPath;
    const bool takesPoint =
        path.empty() || (path.size() < maxPathPoints &&
                         !shorterThan(centroid.x - path.back().x, centroid.y - path.back().y, pathStep));
    if (!takesPoint) return;
    path.push_back(centroid);
    // Finger trails follow the hand path point for point, so they share its thinning and its cap.
    for (const Contact& c : frame_) session_.trails.append(c.id, {c.x, c.y});
}

void GestureRecognizer::detectScroll() {
    // literal 0.12: two open fingers moving together this far are scrolling
    if (open_.size() == 2 && movedTogether(open_, 0.12, Reference::start)) session_.scrolled = true;
}

std::optional<Gesture> GestureRecognizer::endFrame(double time) {
    std::optional<Gesture> decision = endSession(time);
    if (!ended_)
        ended_.emplace(EndedSession{});  // spelled out: clang 14 cannot default-construct a nested type with
                                         // member initializers here
    ended_->time = time;
    ended_->fired = decision.has_value();
    // The old snapshot's buffers become the next session's, so a new session does not allocate.
    std::swap(ended_->session, session_);
    session_.reset();
    return decision;
}

std::optional<Gesture> GestureRecognizer::fingersStillDown() {
    if (session_.consumed || session_.deferred) return std::nullopt;
    if (auto slide = slideAfterHoldThree()) return slide;
    std::optional<std::optional<Gesture>> swipe = swipeByMean();
    if (swipe) return *swipe;
    if (auto rest = restSwipe()) return rest;
    return lifts();
}

std::optional<Gesture> GestureRecognizer::lifts() {
    if (lifted_.empty() || open_.empty()) return std::nullopt;
    if (lifted_.size() == 1) {
        const Track& tap = session_.tracks[lifted_.front()].track;
        if (auto gesture = restTap(tap, open_)) {
            session_.tracks[lifted_.front()].track.spent = true;
            session_.used = true;
            return gesture;
        }
    }
    holdThreeLiftTwo();
    if (lifted_.size() > 1) recognizer_trace::line("{} fingers lifted in one frame", lifted_.size());
    return std::nullopt;
}

std::optional<Gesture> GestureRecognizer::endSession(double time) {
    if (session_.consumed || session_.used) return std::nullopt;
    if (session_.removedAt) return known("3.restRemove");

    const int peak = session_.peak;
    const bool handCount = peak >= 3 && peak <= 5;
    if (session_.deferred || (handCount && shapes::length(session_.handPath) >= shapes::minLength)) {
        return customShapeStep();
    }

    if ((peak == 2 || peak == 3) && session_.tracks.size() == static_cast<std::size_t>(peak)) {
        scratch_.clear();
        for (const TrackEntry& entry : session_.tracks) scratch_.push_back(&entry.track);
        std::stable_sort(scratch_.begin(), scratch_.end(),
                         [](const Track* a, const Track* b) { return a->startTime < b->startTime; });
        const Track& tap = *scratch_.back();
        const std::span<const Track* const> rests(scratch_.data(), scratch_.size() - 1);
        const bool restsOutlastedTap = std::all_of(rests.begin(), rests.end(), [&](const Track* rest) {
            return rest->endTime.value_or(time) >= tap.endTime.value_or(time);
        });
        if (restsOutlastedTap) {
            if (auto gesture = restTap(tap, rests)) return gesture;
        }
    }
    return tapOrDoubleTap(time);
}

std::vector<Stroke> GestureRecognizer::liveStrokes() const {
    return session_.trails.strokes();
}

void GestureRecognizer::openTracks(std::vector<const Track*>& into) const {
    into.clear();
    for (const TrackEntry& entry : session_.tracks) {
        if (entry.track.isOpen()) into.push_back(&entry.track);
    }
}

bool GestureRecognizer::movedTogether(std::span<const Track* const> tracks, double by, Reference from) {
    if (tracks.size() < 2) return false;
    std::optional<SwipeDirection> shared;
    for (const Track* track : tracks) {
        const Contact& reference = from == Reference::start ? track->start : track->anchor;
        const double dx = track->last.x - reference.x;
        const double dy = track->last.y - reference.y;
        if (!longerThan(dx, dy, by)) return false;
        const SwipeDirection direction = directionOf(dx, dy);
        if (shared && *shared != direction) return false;
        shared = direction;
    }
    return true;
}

std::optional<Gesture> GestureRecognizer::known(std::string_view id) {
    if (const Gesture* gesture = GestureCatalog::known(id)) return *gesture;
    return std::nullopt;
}

}  // namespace ostrelle
