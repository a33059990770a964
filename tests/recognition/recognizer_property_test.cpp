// Random frame streams: the recognizer never crashes, never fires once a session is consumed,
// fires only ids it knows, and gives the same answers for the same stream.
#include <gtest/gtest.h>

#include <random>

#include "gestures/gesture_catalog.h"
#include "recognition/gesture_recognizer.h"
#include "recognition/shape_matching.h"

namespace ostrelle {
namespace {

struct Event {
    std::vector<Contact> contacts;
    double time = 0;
    bool click = false;
};

// Fingers wander, land and lift at random; times advance by a few milliseconds, sometimes by a lot.
std::vector<Event> randomStream(std::uint32_t seed, int length) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    std::vector<Event> events;
    std::vector<Contact> down;
    std::int64_t nextID = 1;
    double time = 0;
    for (int i = 0; i < length; ++i) {
        const double roll = unit(random);
        if (roll < 0.08 && down.size() < 6) {
            down.push_back({nextID++ % 9, unit(random), unit(random)});  // ids come back around
        } else if (roll < 0.14 && !down.empty()) {
            down.erase(down.begin() + static_cast<long>(random() % down.size()));
        } else if (roll < 0.16) {
            down.clear();
        }
        for (Contact& c : down) {
            c.x += (unit(random) - 0.5) * 0.04;
            c.y += (unit(random) - 0.5) * 0.04;
        }
        time += unit(random) < 0.05 ? unit(random) : 0.002 + unit(random) * 0.012;
        events.push_back({down, time, unit(random) < 0.02});
    }
    return events;
}

std::vector<std::string> run(GestureRecognizer& recognizer, const std::vector<Event>& events) {
    std::vector<std::string> fired;
    for (const Event& event : events) {
        const bool wasConsumed = recognizer.consumed();
        std::optional<Gesture> gesture =
            event.click ? recognizer.physicalClick() : recognizer.process(event.contacts, event.time);
        if (!gesture) continue;
        EXPECT_FALSE(wasConsumed) << gesture->id << " fired in a consumed session at " << event.time;
        EXPECT_TRUE(gesture->custom || GestureCatalog::find(gesture->id)) << gesture->id;
        // Newly recorded shapes get random ids; compare them by what they are.
        fired.push_back(gesture->custom
                            ? "custom " + gesture->custom->name + std::to_string(gesture->fingers())
                            : gesture->id);
    }
    return fired;
}

TEST(RecognizerProperties, RandomStreamsKeepTheInvariants) {
    Gesture shape = Gesture::newCustom(shapes::fromDrawing(3, {{0, 0}, {0, 1}, {1, 1}}, {{{0, 0}}}));
    shape.custom->name = "L";
    std::size_t total = 0;
    for (std::uint32_t seed = 1; seed <= 60; ++seed) {
        const std::vector<Event> events = randomStream(seed, 3000);
        GestureRecognizer first;
        GestureRecognizer second;
        if (seed % 3 == 0) first.customs = second.customs = {shape};
        first.recordingShapes = second.recordingShapes = seed % 5 == 0;
        const auto a = run(first, events);
        const auto b = run(second, events);
        EXPECT_EQ(a, b) << "seed " << seed;
        total += a.size();
    }
    EXPECT_GT(total, 0U);  // the streams do exercise the firing paths
}

}  // namespace
}  // namespace ostrelle
