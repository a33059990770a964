// What the engine does with recognized gestures: double-tap deferral, capture mode, own-window clicks.
#include <gtest/gtest.h>

#include "engine/engine_fixture.h"
#include "recognition/shape_matching.h"

namespace ostrelle::testing {
namespace {

using Keys = std::vector<int>;

class EngineGestures : public EngineFixture {};

TEST_F(EngineGestures, ATapWaitsTheWindowWhenItsDoubleTapIsBound) {
    bind("4.tap", "browsers", "newtab");
    bind("4.doubleTap", "browsers", "close");
    engine();
    tapAt(1.0, 4);
    EXPECT_EQ(keysDown(), Keys{});
    queue.advanceTo(1.1 + 0.349);
    EXPECT_EQ(keysDown(), Keys{});
    queue.advanceTo(1.1 + 0.35);
    EXPECT_EQ(keysDown(), Keys{newTabKey});
}

TEST_F(EngineGestures, ASecondTapInsideTheWindowRunsOnlyTheDoubleTap) {
    bind("4.tap", "browsers", "newtab");
    bind("4.doubleTap", "browsers", "close");
    engine();
    tapAt(1.0, 4);
    tapAt(1.2, 4);
    EXPECT_EQ(keysDown(), Keys{closeTabKey});  // in the same turn as the frame that completed it
    queue.runAll();
    EXPECT_EQ(keysDown(), Keys{closeTabKey});
}

TEST_F(EngineGestures, WithoutADoubleTapBindingTheTapRunsAtOnceAndTheDoubleTapRunsItAgain) {
    bind("4.tap", "browsers", "newtab");
    engine();
    tapAt(1.0, 4);
    EXPECT_EQ(keysDown(), Keys{newTabKey});
    tapAt(1.2, 4);  // recognized as the double tap, which has no binding of its own
    EXPECT_EQ(keysDown(), (Keys{newTabKey, newTabKey}));
    queue.runAll();
    EXPECT_EQ(keysDown(), (Keys{newTabKey, newTabKey}));
}

TEST_F(EngineGestures, UnboundAndNotOfferedGesturesDoNothing) {
    bind("3.restRemove", "browsers", "newtab");  // known but not offered
    engine();
    frameAt(0.0, {{1, 0.4, 0.5}, {2, 0.5, 0.45}, {3, 0.6, 0.5}});
    frameAt(0.5, {{2, 0.5, 0.45}});
    frameAt(0.7, {});
    tapAt(1.0, 5);  // offered but unbound
    queue.runAll();
    EXPECT_TRUE(system.recorded().empty());
}

TEST_F(EngineGestures, HapticFeedbackComesBeforeTheActionWhenTurnedOn) {
    bind("3.tap", "browsers", "newtab");
    settings.setBool(settings_keys::hapticFeedback, true);
    engine();
    tapAt(1.0, 3);
    ASSERT_FALSE(system.recorded().empty());
    EXPECT_TRUE(std::holds_alternative<recorded::Haptic>(system.recorded().front()));
    EXPECT_EQ(keysDown(), Keys{newTabKey});
}

TEST_F(EngineGestures, AClickOverOurOwnWindowIsIgnoredElsewhereItRuns) {
    bind("3.click", "browsers", "close");
    engine();
    const std::vector<Contact> hand{{1, 0.4, 0.5}, {2, 0.5, 0.45}, {3, 0.6, 0.5}};
    frameAt(1.0, hand);
    source.click(true);
    frameAt(1.2, {});
    EXPECT_EQ(keysDown(), Keys{});
    frameAt(2.0, hand);
    source.click(false);
    EXPECT_EQ(keysDown(), Keys{closeTabKey});
}

TEST_F(EngineGestures, CaptureReportsInsteadOfRunning) {
    bind("3.tap", "browsers", "newtab");
    engine().setCapturing(true);
    tapAt(1.0, 3);
    ASSERT_TRUE(engine().lastDetection().has_value());
    EXPECT_EQ(engine().lastDetection()->gesture.id, "3.tap");
    EXPECT_TRUE(system.recorded().empty());
}

TEST_F(EngineGestures, CaptureHoldsATapForItsDoubleTap) {
    engine().setCapturing(true);
    tapAt(1.0, 4);
    EXPECT_FALSE(engine().lastDetection().has_value());
    queue.advanceTo(1.1 + 0.35);
    ASSERT_TRUE(engine().lastDetection().has_value());
    EXPECT_EQ(engine().lastDetection()->gesture.id, "4.tap");

    tapAt(2.0, 4);
    tapAt(2.2, 4);
    EXPECT_EQ(engine().lastDetection()->gesture.id, "4.doubleTap");
    const std::string id = engine().lastDetection()->id;
    queue.runAll();
    EXPECT_EQ(engine().lastDetection()->id, id);  // the pending tap was cancelled
}

TEST_F(EngineGestures, TwoEqualDetectionsInARowAreTwoChanges) {
    engine().setCapturing(true);
    int changes = 0;
    engine().observers.add([&] { ++changes; });
    tapAt(1.0, 3);
    const auto first = engine().lastDetection();
    tapAt(2.0, 3);
    EXPECT_NE(engine().lastDetection()->id, first->id);
    EXPECT_GE(changes, 2);
}

TEST_F(EngineGestures, TurningCaptureOffCancelsAPendingTap) {
    engine().setCapturing(true);
    tapAt(1.0, 4);
    engine().setCapturing(false);
    queue.runAll();
    EXPECT_FALSE(engine().lastDetection().has_value());
}

TEST_F(EngineGestures, CaptureIgnoresTheSessionUnderWayUntilAllFingersLift) {
    engine();
    const std::vector<Contact> resting{{1, 0.4, 0.5}, {2, 0.5, 0.45}, {3, 0.6, 0.5}};
    frameAt(1.0, resting);
    engine().setCapturing(true);
    source.click(false);  // a three-finger click in the ignored session
    frameAt(1.1, {});
    EXPECT_FALSE(engine().lastDetection().has_value());
    tapAt(2.0, 3);
    ASSERT_TRUE(engine().lastDetection().has_value());
    EXPECT_EQ(engine().lastDetection()->gesture.id, "3.tap");
}

TEST_F(EngineGestures, CaptureReportsClicksEvenOverOurOwnWindow) {
    engine().setCapturing(true);
    frameAt(1.0, {{1, 0.4, 0.5}, {2, 0.5, 0.45}, {3, 0.6, 0.5}});
    source.click(true);
    ASSERT_TRUE(engine().lastDetection().has_value());
    EXPECT_EQ(engine().lastDetection()->gesture.id, "3.click");
}

TEST_F(EngineGestures, ReadingWhileCapturingTwoOrMoreFingers) {
    engine().setCapturing(true);
    frameAt(1.0, {{1, 0.4, 0.5}});
    EXPECT_FALSE(engine().isReading());
    frameAt(1.1, {{1, 0.4, 0.5}, {2, 0.5, 0.5}});
    EXPECT_TRUE(engine().isReading());
    frameAt(1.2, {});
    EXPECT_FALSE(engine().isReading());
}

TEST_F(EngineGestures, TheLiveTraceFollowsTheDrawingAndClearsWhenCaptureEnds) {
    engine().setCapturing(true);
    std::vector<Contact> hand{{1, 0.3, 0.5}, {2, 0.4, 0.5}, {3, 0.5, 0.5}};
    int updates = 0;
    engine().liveTrace().observers.add([&] { ++updates; });
    frameAt(1.0, hand);
    frameAt(1.01, hand);  // no new path point: no new strokes
    EXPECT_EQ(updates, 1);
    for (Contact& c : hand) c.y += 0.05;
    frameAt(1.02, hand);
    EXPECT_EQ(updates, 2);
    EXPECT_EQ(engine().liveTrace().strokes().size(), 3U);
    engine().setCapturing(false);
    EXPECT_TRUE(engine().liveTrace().strokes().empty());
}

TEST_F(EngineGestures, TheRecognizerKnowsTheStoresShapesAsTheyChange) {
    engine();
    EXPECT_TRUE(engine().recognizer().customs.empty());
    CustomShape shape = shapes::fromDrawing(3, {{0, 0}, {0, 1}, {1, 1}}, {{{0, 0}}});
    shape.name = "L";
    ASSERT_TRUE(store.save(GestureBinding::make(Gesture::newCustom(shape), ActionRef{"browsers", "newtab", {}, {}}, 0)));
    ASSERT_EQ(engine().recognizer().customs.size(), 1U);
    EXPECT_EQ(engine().recognizer().customs[0].custom->name, "L");
}

TEST_F(EngineGestures, DeferredWorkOutlivingTheEngineDoesNothing) {
    bind("4.tap", "browsers", "newtab");
    bind("4.doubleTap", "browsers", "close");
    engine();
    tapAt(1.0, 4);
    destroyEngine();
    queue.runAll();
    EXPECT_TRUE(system.recorded().empty());
}

}  // namespace
}  // namespace ostrelle::testing
