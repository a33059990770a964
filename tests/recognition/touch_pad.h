#pragma once

// A scripted trackpad for recognizer tests: fingers land, move and lift, and each at(t)
// delivers the fingers that are down now as one frame at time t.
//
//   pad.land(1, 0.4, 0.5).land(2, 0.5, 0.5).land(3, 0.6, 0.5).at(0.0);
//   pad.liftAll().at(0.2);           // pad.fired() == {"3.tap"}

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "recognition/gesture_recognizer.h"

namespace ostrelle::testing {

class TouchPad {
public:
    struct Firing {
        double t;
        std::string id;
    };

    TouchPad() {
        GestureRecognizer::trace = [this](const std::string& line) { traces_.push_back(line); };
    }
    ~TouchPad() { GestureRecognizer::trace = nullptr; }
    TouchPad(const TouchPad&) = delete;
    TouchPad& operator=(const TouchPad&) = delete;

    TouchPad& land(std::int64_t id, double x, double y) {
        down_.push_back({id, x, y});
        return *this;
    }
    TouchPad& move(std::int64_t id, double x, double y) {
        for (Contact& c : down_) {
            if (c.id == id) c = {id, x, y};
        }
        return *this;
    }
    TouchPad& moveBy(std::int64_t id, double dx, double dy) {
        for (Contact& c : down_) {
            if (c.id == id) c = {id, c.x + dx, c.y + dy};
        }
        return *this;
    }
    TouchPad& moveAllBy(double dx, double dy) {
        for (Contact& c : down_) c = {c.id, c.x + dx, c.y + dy};
        return *this;
    }
    TouchPad& lift(std::int64_t id) {
        std::erase_if(down_, [id](const Contact& c) { return c.id == id; });
        return *this;
    }
    TouchPad& liftAll() {
        down_.clear();
        return *this;
    }

    // Delivers the current fingers as one frame.
    TouchPad& at(double t) {
        last_ = recognizer.process(down_, t);
        if (last_) fired_.push_back({t, last_->id});
        return *this;
    }
    // Presses the trackpad button at time t (the time only labels the firing).
    TouchPad& click(double t) {
        last_ = recognizer.physicalClick();
        if (last_) fired_.push_back({t, last_->id});
        return *this;
    }

    // The gesture of the latest frame or click, if any.
    const std::optional<Gesture>& last() const { return last_; }
    std::vector<std::string> fired() const {
        std::vector<std::string> ids;
        for (const Firing& f : fired_) ids.push_back(f.id);
        return ids;
    }
    const std::vector<Firing>& firings() const { return fired_; }
    const std::vector<std::string>& traces() const { return traces_; }
    void clearTraces() { traces_.clear(); }

    GestureRecognizer recognizer;

private:
    std::vector<Contact> down_;
    std::optional<Gesture> last_;
    std::vector<Firing> fired_;
    std::vector<std::string> traces_;
};

using Ids = std::vector<std::string>;

}  // namespace ostrelle::testing
