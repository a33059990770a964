#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "noise.h"
#include "recognition/contact.h"
#include "recognition/recording.h"
#include "support/point.h"

namespace ostrelle::examples {

// Where a finger means to be at a moment; between two waypoints it eases in and out, as a
// real fingertip speeds up and slows down.
struct Waypoint {
    double time = 0;  // s
    Point at;
};

// One finger of a take: when it lands, when it lifts, and the path it means to follow.
struct FingerPlan {
    std::int64_t id = 0;
    double down = 0;  // s
    double up = 0;    // s; the finger is absent from frames at or after this time
    std::vector<Waypoint> path;
};

// One performance of a gesture: the fingers and the moments the trackpad is pressed down.
struct Take {
    std::vector<FingerPlan> fingers;
    std::vector<double> clicks;  // s
};

struct CommentLine {
    std::string text;
};
using RecordingLine = std::variant<CommentLine, RecordedFrame, RecordedClick>;

// Plays takes on a simulated trackpad: samples the planned fingers every frame, adds sensor
// jitter, and collects the recording lines together with the gestures each take should yield.
class Performer {
  public:
    static constexpr double frameInterval = 0.008;  // s: the trackpad reports at 125 Hz
    static constexpr double startTime = 1.0;        // s: the first frame time of a recording

    explicit Performer(std::uint64_t seed);

    double now() const { return now_; }
    Noise& noise() { return noise_; }
    // Touch ids keep counting up across takes, as a touchpad's tracking ids do.
    std::int64_t newFingerID() { return nextID_++; }

    // Nothing touches the trackpad for a while; no frames arrive meanwhile.
    void idle(double seconds) { now_ += seconds; }

    void perform(const std::string& label, const Take& take, const std::vector<std::string>& expected);

    const std::vector<RecordingLine>& lines() const { return lines_; }
    const std::vector<std::string>& expected() const { return expected_; }

    // The frames of a take without recording them, for building a shape from a drawing.
    std::vector<RecordedFrame> sample(const Take& take);

  private:
    Noise noise_;
    double now_ = startTime;
    std::int64_t frameIndex_ = 0;
    std::int64_t nextID_ = 1;
    std::vector<RecordingLine> lines_;
    std::vector<std::string> expected_;
};

// The planned position of a finger at a time, before jitter.
Point plannedPosition(const FingerPlan& finger, double time);

}  // namespace ostrelle::examples
