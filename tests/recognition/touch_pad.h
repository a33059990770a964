#pragma once

// A scripted trackpad for recognizer tests: fingers land, move and lift, and each at(t)
// delivers the fingers that are down now as one frame at time t.
//
//   pad.hand(3).at(0.0);             // three fingers land
//   pad.liftAll().at(0.2);           // pad.fired() == {"3.tap"}

#include <gmock/gmock.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "recognition/gesture_recognizer.h"

namespace ostrelle::testing {

using Ids = std::vector<std::string>;

class TouchPad {
  public:
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
    // Fingers 1 to n of a relaxed hand, left to right from (x, y).
    TouchPad& hand(int fingers, double x = 0.3, double y = 0.5) {
        for (int i = 0; i < fingers; ++i) land(i + 1, x + 0.08 * i, y + 0.01 * i);
        return *this;
    }
    TouchPad& moveBy(std::int64_t id, double dx, double dy) {
        for (Contact& c : down_)
            if (c.id == id) c = {id, c.x + dx, c.y + dy};
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
    TouchPad& at(double t) { return note(recognizer.process(down_, t)); }
    // Presses the trackpad button.
    TouchPad& click() { return note(recognizer.physicalClick()); }

    // Everything fired so far; a drawn shape shows as "custom " and its name.
    const Ids& fired() const { return fired_; }
    const std::vector<std::string>& traces() const { return traces_; }

    GestureRecognizer recognizer;

  private:
    TouchPad& note(const std::optional<Gesture>& gesture) {
        if (gesture) fired_.push_back(gesture->custom ? "custom " + gesture->custom->name : gesture->id);
        return *this;
    }

    std::vector<Contact> down_;
    Ids fired_;
    std::vector<std::string> traces_;
};

// One named case of a table-driven recognizer test: a script played on a fresh pad must fire
// exactly `fired`...
inline void expectFired(const char* name, const Ids& fired, const std::function<void(TouchPad&)>& play) {
    SCOPED_TRACE(name);
    TouchPad pad;
    play(pad);
    EXPECT_EQ(pad.fired(), fired);
}

// ...or fire nothing and leave `trace` among the lines of the rules that rejected it.
inline void expectRejected(const char* name, const std::string& trace,
                           const std::function<void(TouchPad&)>& play) {
    SCOPED_TRACE(name);
    TouchPad pad;
    play(pad);
    EXPECT_EQ(pad.fired(), Ids{});
    EXPECT_THAT(pad.traces(), ::testing::Contains(trace));
}

}  // namespace ostrelle::testing
