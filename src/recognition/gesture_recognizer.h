#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "gestures/custom_shape.h"
#include "gestures/gesture.h"
#include "recognition/contact.h"
#include "recognition/track.h"
#include "support/point.h"

namespace ostrelle {

// Turns the stream of touch frames into at most one gesture per frame. Holds no timers: every
// decision is taken inside a call, from the frames' own times. A session runs from the first
// frame with contacts to the first frame without any.
class GestureRecognizer {
  public:
    // Thresholds. Several rules use the same numbers written out; those literals stay literal
    // on purpose (tuning a constant here must not move them) and say so where they stand.
    static constexpr double tapMaxDuration =
        0.25;                                   // s: longest tap session; longest lift that counts as a tap
    static constexpr double tapMaxMove = 0.03;  // units: every finger of a tap moves less than this
    static constexpr double doubleTapWindow = 0.35;    // s: second tap within this of the first (inclusive)
    static constexpr double swipeMinMove = 0.12;       // units: a finger moving further is "moving"
    static constexpr double handSwipeMinMove = 0.06;   // units: mean displacement of a 4- or 5-finger swipe
    static constexpr double threeSwipeMinMove = 0.1;   // units: mean displacement of a 3-finger swipe
    static constexpr double restMaxMove = 0.08;        // units: a finger drifting less than this is resting
    static constexpr double restTapMaxDuration = 0.4;  // s: longest tapping finger of a rest tap
    static constexpr double restTapMaxMove = 0.06;     // units: the tapping finger moves less than this
    static constexpr double restTapMinGap = 0.03;      // units: least horizontal gap between tap and rest
    static constexpr double groupWindow = 0.08;     // s: landing/lifting spread that still counts as together
    static constexpr double restMinHold = 0.15;     // s: rests land at least this long before the tap
    static constexpr double groupMaxGap = 0.3;      // units: contacts closer than this belong together
    static constexpr double dropoutWindow = 0.015;  // s: a session that ended this recently is resumed
    static constexpr double pathStep = 0.004;       // units: least centroid move for a new hand-path point
    static constexpr std::size_t maxPathPoints = 1024;  // the hand path stops growing here

    using TraceSink = std::function<void(const std::string&)>;
    // Diagnostic sink for rejection reasons. Unset in normal operation, so the texts are never composed.
    static inline TraceSink trace;

    GestureRecognizer();

    // One touch frame: the contacts down now (any order; empty when every finger lifted) and the frame's
    // time.
    std::optional<Gesture> process(std::span<const Contact> contacts, double time);
    // The trackpad button went down.
    std::optional<Gesture> physicalClick();

    // Strokes drawn so far this session, one per finger in ascending contact id.
    std::vector<Stroke> liveStrokes() const;
    std::size_t pathCount() const { return session_.handPath.size(); }
    bool consumed() const { return session_.consumed; }
    int touching() const { return touching_; }

    // The user's custom-shape gestures; set by the engine between frames.
    std::vector<Gesture> customs;
    // Set while the shape editor records a new shape.
    bool recordingShapes = false;

  private:
    struct TapRecord {
        int fingers = 0;
        double time = 0;
    };

    struct TrackEntry {
        std::int64_t id = 0;
        Track track;
        std::uint64_t seenInFrame = 0;  // the last frame that carried this finger
    };

    // Finger trails, kept in reusable slots so a new session does not allocate.
    class TrailSet {
      public:
        void clear();
        void append(std::int64_t id, Point point);
        std::vector<Stroke> strokes() const;

      private:
        struct Trail {
            std::int64_t id = 0;
            std::vector<Point> points;
        };
        std::vector<Trail> slots_;
        std::size_t used_ = 0;
    };

    // Everything that lives for one session and is snapshotted at its end.
    struct Session {
        std::vector<TrackEntry> tracks;
        double sessionStart = 0;
        int peak = 0;
        bool used = false;
        std::optional<Contact> removedAt;
        bool consumed = false;
        bool scrolled = false;
        std::vector<std::int64_t> ignored;
        std::optional<Gesture> deferred;
        std::vector<Point> handPath;
        TrailSet trails;
        int pathPeak = 0;

        void reset();
        TrackEntry* openEntry(std::int64_t id);
        bool hasTrackID(std::int64_t id) const;
        bool isIgnored(std::int64_t id) const;
    };

    struct EndedSession {
        double time = 0;
        Session session;
        bool fired = false;
    };

    enum class Reference { start, anchor };

    // Frame steps, in the order they run.
    bool resumeAfterDropout(std::span<const Contact> contacts, double time);
    void weedOutStrays(std::span<const Contact> contacts, double time);
    bool formsOneGroup() const;
    void updateTracks(double time);
    void recordHandPath(int previousPeak);
    void detectScroll();
    std::optional<Gesture> fingersStillDown();
    std::optional<Gesture> endFrame(double time);

    // Session end and its rules.
    std::optional<Gesture> endSession(double time);
    std::optional<Gesture> customShapeStep();
    std::optional<Gesture> tapOrDoubleTap(double time);

    // Rules while fingers are down.
    std::optional<Gesture> slideAfterHoldThree();
    // Empty optional: the rule did not apply; a held value: it decided (possibly deferring, yielding
    // nothing).
    std::optional<std::optional<Gesture>> swipeByMean();
    std::optional<Gesture> restSwipe();
    std::optional<Gesture> lifts();
    void holdThreeLiftTwo();

    std::optional<Gesture> restTap(const Track& tap, std::span<const Track* const> rests) const;
    std::optional<Gesture> plainSwipe(const Gesture& gesture);
    static bool movedTogether(std::span<const Track* const> tracks, double by, Reference from);
    static std::optional<Gesture> known(std::string_view id);

    void openTracks(std::vector<const Track*>& into) const;

    Session session_;
    std::optional<EndedSession> ended_;
    std::optional<TapRecord> lastTap_;
    int touching_ = 0;

    // Per-frame scratch, kept between frames so the steady state does not allocate.
    std::vector<Contact> frame_;
    std::vector<std::int64_t> newIDs_;
    std::vector<std::size_t> lifted_;
    std::vector<std::size_t> groupOf_;
    std::vector<std::size_t> groupSize_;
    std::vector<double> landing_;
    std::vector<const Track*> open_;
    std::vector<const Track*> scratch_;
    bool resuming_ = false;
    std::uint64_t frameNumber_ = 0;
};

}  // namespace ostrelle
