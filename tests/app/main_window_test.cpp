// The main window around its pages: the guide while touches can't be read, and deleting with undo.
#include "app/main_window.h"

#include <gtest/gtest.h>

#include <QTest>

#include "engine/engine_fixture.h"

namespace ostrelle::app {
namespace {

struct WindowRig : testing::EngineRig {
    AppContext context{engine(), store, settings, {}, false, {}, nullptr};
};

TEST(MainWindow, ShowsTheGuideWhileTouchesCantBeReadAndLeavesItOnceTheyCan) {
    WindowRig rig;
    rig.source.refuse = TouchSourceError{"No permission to read the touchpad."};
    rig.engine().setEnabled(false);
    rig.engine().setEnabled(true);  // a start that fails
    MainWindow window(rig.context);
    EXPECT_TRUE(window.showsPermissionGuide());
    rig.queue.advanceTo(GestureEngine::startRetryDelay);  // the same error again
    EXPECT_TRUE(window.showsPermissionGuide());
    rig.source.refuse.reset();
    rig.queue.advanceTo(2 * GestureEngine::startRetryDelay);
    EXPECT_FALSE(window.showsPermissionGuide());
}

TEST(MainWindow, ADeletedGestureComesBackWithUndoUnlessItWasBoundAgain) {
    WindowRig rig;
    rig.bind("3.tap", "newtab");
    const GestureBinding original = rig.store.bindings().front();
    MainWindow window(rig.context);
    window.deleteBinding(original.id);
    EXPECT_TRUE(rig.store.bindings().empty());
    window.undoDelete();
    EXPECT_EQ(rig.store.bindings(), std::vector{original});
    EXPECT_EQ(window.bindingList().chosenID(), original.id);

    window.deleteBinding(original.id);
    rig.bind("3.tap", "close");  // bound anew meanwhile: undo must not take it away
    window.undoDelete();
    ASSERT_EQ(rig.store.bindings().size(), 1U);
    EXPECT_EQ(rig.store.bindings().front().action.optionID, "close");
}

}  // namespace
}  // namespace ostrelle::app
