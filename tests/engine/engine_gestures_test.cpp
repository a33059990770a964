// What the engine does with recognized gestures: double-tap deferral, capture mode, own-window clicks.
#include "engine/engine_fixture.h"
#include "recognition/shape_matching.h"

namespace ostrelle::testing {
namespace {

using Keys = std::vector<int>;
const Bindings tapAndDoubleTap{{"4.tap", "newtab"}, {"4.doubleTap", "close"}};

// Three fingers resting.
const std::vector<Contact> three{{1, 0.4, 0.5}, {2, 0.5, 0.45}, {3, 0.6, 0.5}};

class EngineGestures : public EngineFixture {};

TEST_F(EngineGestures, ATapWaitsTheDoubleTapWindowWhenItsDoubleTapIsBound) {
    for (const auto& [gesture, option] : tapAndDoubleTap) bind(gesture, option);
    engine();
    tapAt(1.0, 4);
    queue.advanceTo(1.1 + 0.349);
    EXPECT_EQ(keysDown(), Keys{});
    queue.advanceTo(1.1 + 0.35);
    EXPECT_EQ(keysDown(), Keys{newTab});
}

TEST(EngineRuns, WhatIsBoundAndOffered) {
    expectKeys("a second tap inside the window runs only the double tap", tapAndDoubleTap, {closeTab},
               [](EngineRig& r) { r.doubleTapAt(1.0, 4); });
    // The double tap has no binding of its own, so it runs the tap's.
    expectKeys("without a double-tap binding the tap runs at once", {{"4.tap", "newtab"}}, {newTab, newTab},
               [](EngineRig& r) { r.doubleTapAt(1.0, 4); });
    expectKeys("known but not offered", {{"3.restRemove", "newtab"}}, {}, [](EngineRig& r) {
        r.frameAt(0.0, three);
        r.frameAt(0.5, {three[1]});
        r.frameAt(0.7, {});
    });
    // A click on our own window is the user working our interface, not a gesture.
    expectKeys("a click over our own window", {{"3.click", "close"}}, {},
               [](EngineRig& r) { r.clickAt(1.0, 3, true); });
    expectKeys("a click elsewhere", {{"3.click", "close"}}, {closeTab},
               [](EngineRig& r) { r.clickAt(1.0, 3, false); });
    expectKeys("deferred work outliving the engine", tapAndDoubleTap, {}, [](EngineRig& r) {
        r.tapAt(1.0, 4);
        r.destroyEngine();
    });
}

TEST_F(EngineGestures, HapticFeedbackComesBeforeTheActionWhenTurnedOn) {
    bind("3.tap", "newtab");
    settings.setBool(settings_keys::hapticFeedback, true);
    engine();
    tapAt(1.0, 3);
    ASSERT_FALSE(system.recorded().empty());
    EXPECT_TRUE(std::holds_alternative<recorded::Haptic>(system.recorded().front()));
    EXPECT_EQ(keysDown(), Keys{newTab});
}

TEST(EngineCaptures, GesturesInsteadOfRunningThem) {
    expectDetected("a bound tap", "3.tap", [](EngineRig& r) { r.tapAt(1.0, 3); });
    expectDetected("clicks even over our own window", "3.click",
                   [](EngineRig& r) { r.clickAt(1.0, 3, true); });
    expectDetected("no pending tap once capture ends", "", [](EngineRig& r) {
        r.tapAt(1.0, 4);
        r.engine().setCapturing(false);
    });
}

// A session already under way when capture starts is not what the user is about to show.
TEST_F(EngineGestures, CaptureIgnoresTheSessionUnderWayUntilAllFingersLift) {
    engine();
    landAt(1.0, 3);
    engine().setCapturing(true);
    source.click(false);
    frameAt(1.1, {});
    EXPECT_EQ(detected(), "");
    tapAt(2.0, 3);
    EXPECT_EQ(detected(), "3.tap");
}

TEST_F(EngineGestures, CaptureHoldsATapForItsDoubleTapAndReportsEachDetectionAnew) {
    engine().setCapturing(true);
    tapAt(1.0, 4);
    EXPECT_EQ(detected(), "");
    queue.advanceTo(1.1 + 0.35);
    EXPECT_EQ(detected(), "4.tap");

    doubleTapAt(2.0, 4);
    EXPECT_EQ(detected(), "4.doubleTap");
    const std::string id = engine().lastDetection()->id;
    queue.runAll();
    EXPECT_EQ(engine().lastDetection()->id, id);  // the pending tap was cancelled
    doubleTapAt(4.0, 4);
    EXPECT_NE(engine().lastDetection()->id, id);  // the same gesture again is another detection
}

TEST_F(EngineGestures, CaptureReadsTwoOrMoreFingersAndTracesTheDrawing) {
    engine().setCapturing(true);
    int traces = 0;  // changes of the strokes; the fingers down change with every frame
    std::vector<Stroke> shown;
    engine().liveTrace().observers.add([&] {
        if (engine().liveTrace().strokes() == shown) return;
        shown = engine().liveTrace().strokes();
        ++traces;
    });
    landAt(1.0, 1);
    EXPECT_FALSE(engine().isReading());
    landAt(1.1, 3);
    EXPECT_TRUE(engine().isReading());
    EXPECT_EQ(engine().liveTrace().contacts().size(), 3U);
    landAt(1.11, 3);  // no new path point: no new strokes
    EXPECT_EQ(traces, 1);
    frameAt(1.12, {{1, 0.3, 0.55}, {2, 0.38, 0.55}, {3, 0.46, 0.55}});
    EXPECT_EQ(traces, 2);
    EXPECT_EQ(engine().liveTrace().strokes().size(), 3U);
    frameAt(1.2, {});
    EXPECT_FALSE(engine().isReading());
    EXPECT_TRUE(engine().liveTrace().contacts().empty());
    engine().setCapturing(false);
    EXPECT_TRUE(engine().liveTrace().strokes().empty());
}

TEST_F(EngineGestures, TheRecognizerKnowsTheStoresShapesAsTheyChange) {
    CustomShape shape = shapes::fromDrawing(3, {{0, 0}, {0, 1}, {1, 1}}, {{{0, 0}}});
    shape.name = "L";
    ASSERT_TRUE(store.save(
        GestureBinding::make(Gesture::newCustom(shape), ActionRef{"browsers", "newtab", {}, {}}, 0)));
    ASSERT_EQ(engine().recognizer().customs.size(), 1U);
    EXPECT_EQ(engine().recognizer().customs[0].custom->name, "L");
}

}  // namespace
}  // namespace ostrelle::testing
