#include "app/binding_editor.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <QTreeWidget>

#include "actions/dry_run_system_port.h"
#include "actions/linux_actions.h"
#include "app/action_picker.h"
#include "app/trackpad_preview.h"
#include "engine/fake_hot_key_registrar.h"
#include "engine/replay_touch_source.h"
#include "support/scratch_folder.h"
#include "support/virtual_clock_queue.h"
#include "testing/temporary_folder.h"

namespace ostrelle::app {
namespace {

// An engine fed by hand from a replay source, with a store in a scratch folder and a clock the
// test moves: the application's context without a device.
struct EditorRig {
    static std::filesystem::path emptyStore(const ScratchFolder& folder) {
        testing::writeText(folder / "bindings.json", "[]");
        return folder / "bindings.json";
    }
    void frameAt(double t, const std::vector<Contact>& contacts) {
        queue.advanceTo(t);
        source.deliverFrame(contacts, t);
    }

    ScratchFolder folder{"ostrelle-editor"};
    BindingStore store{emptyStore(folder), false, [] { return 1.7e9; }};
    ReplayTouchSource source;
    DryRunSystemPort system;
    VirtualClockQueue queue;
    InMemorySettings settings;
    testing::FakeHotKeyRegistrar hotKeys;
    LinuxActions gnome{LinuxDesktop::gnome};
    ActionHost host{nullptr, nullptr, std::nullopt, &gnome};
    GestureEngine engine{{store, source, system, queue, settings, hotKeys, [] { return 1.7e9; },
                          [](double) { return std::string("then"); }, host}};
    AppContext context{engine, store, settings, host, false, {}, nullptr};
};

const std::vector<Contact> threeFingers{{1, 0.3, 0.5}, {2, 0.45, 0.42}, {3, 0.6, 0.5}};

// How many pixels of the preview are painted in the fingers' colour.
int fingerPixels(TrackpadPreview& preview) {
    const QImage image = preview.grab().toImage();
    const QRgb finger = preview.palette().color(QPalette::Highlight).rgb();
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) count += image.pixel(x, y) == finger ? 1 : 0;
    }
    return count;
}

void showActive(QWidget& window) {
    window.resize(window.sizeHint());  // a first show keeps to two thirds of the small offscreen screen
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window, 2000));
}

void pickAction(BindingEditor& editor, const char* query) {
    QLineEdit& search = editor.actionPicker().searchField();
    search.setFocus();
    QTest::keyClicks(&search, query);
    QTest::keyClick(&search, Qt::Key_Down);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
}

void selectTrigger(BindingEditor& editor, const std::string& id) {
    QTreeWidget* list = nullptr;
    for (auto* tree : editor.findChildren<QTreeWidget*>()) {
        if (tree->accessibleName() == BindingEditor::gestureListName) list = tree;
    }
    ASSERT_NE(list, nullptr);
    for (QTreeWidgetItemIterator it(list); *it; ++it) {
        if ((*it)->data(0, Qt::UserRole).toString().toStdString() == id) list->setCurrentItem(*it);
    }
}

TEST(BindingEditor, RecordsAThreeFingerTapPicksAnActionAndSaves) {
    EditorRig rig;
    BindingEditor editor(rig.context, std::nullopt);
    showActive(editor);
    QSignalSpy saved(&editor, &BindingEditor::saved);

    editor.setRecording(true);
    ASSERT_TRUE(rig.engine.isCapturing());
    rig.frameAt(1.0, threeFingers);
    ASSERT_TRUE(QTest::qWaitFor([&] { return editor.preview().paintCount() > 0; }, 2000));
    EXPECT_GT(fingerPixels(editor.preview()), 0) << "the fingers down are drawn";

    rig.frameAt(1.1, {});
    rig.queue.advanceTo(1.6);
    EXPECT_EQ(editor.detectedText(), QString(BindingEditor::detectedPrefix) + "Three-finger tap");
    EXPECT_FALSE(rig.engine.isCapturing()) << "detection ends the recording";
    EXPECT_EQ(editor.gesture(), Gesture("3.tap"));

    pickAction(editor, "open new tab");
    ASSERT_EQ(editor.actionPicker().action(), (ActionRef{"browsers", "newtab", {}, {}}));
    ASSERT_TRUE(editor.save());

    ASSERT_EQ(saved.count(), 1);
    const BindingStore reread(rig.store.fileURL(), true);
    ASSERT_EQ(reread.bindings().size(), 1U);
    EXPECT_EQ(reread.bindings()[0].id, saved[0][0].toString().toStdString());
    EXPECT_EQ(reread.bindings()[0].gesture, Gesture("3.tap"));
    EXPECT_EQ(reread.bindings()[0].action.optionID, "newtab");
}

TEST(BindingEditor, RefusesAGestureAnotherBindingHolds) {
    EditorRig rig;
    const auto held = GestureBinding::make(Gesture("3.tap"), {"browsers", "newtab", {}, {}}, 0);
    ASSERT_TRUE(rig.store.save(held));

    BindingEditor fresh(rig.context, std::nullopt);
    showActive(fresh);
    QSignalSpy saved(&fresh, &BindingEditor::saved);
    selectTrigger(fresh, "3.tap");
    pickAction(fresh, "close");
    EXPECT_FALSE(fresh.save());
    EXPECT_TRUE(fresh.message().contains("Three-finger tap")) << fresh.message().toStdString();
    EXPECT_TRUE(fresh.message().contains(QString::fromStdString(ActionCatalog::pill(held.action, rig.host))));
    EXPECT_EQ(saved.count(), 0);
    EXPECT_EQ(rig.store.bindings(), std::vector{held});

    // The binding that holds it may keep it while its action changes.
    BindingEditor own(rig.context, held);
    showActive(own);
    pickAction(own, "close");
    EXPECT_TRUE(own.save()) << own.message().toStdString();
    EXPECT_EQ(rig.store.bindings().at(0).id, held.id);
    EXPECT_EQ(rig.store.bindings().at(0).action.optionID, "close");
}

// A drawn "L" becomes a new shape under the name the store offers next.
TEST(BindingEditor, RecordsADrawnShapeUnderTheNextFreeName) {
    EditorRig rig;
    BindingEditor editor(rig.context, std::nullopt);
    showActive(editor);
    editor.setRecording(true);
    double t = 1.0;
    std::vector<Contact> hand{{1, 0.3, 0.2}, {2, 0.38, 0.2}, {3, 0.46, 0.2}};
    for (const auto& [dx, dy] : {std::pair{0.0, 0.01}, std::pair{0.01, 0.0}}) {
        for (int step = 0; step < 25; ++step) {
            for (Contact& finger : hand) finger = {finger.id, finger.x + dx, finger.y + dy};
            rig.frameAt(t += 0.008, hand);
        }
    }
    rig.frameAt(t + 0.008, {});
    const std::string offered = rig.store.nextCustomName();
    ASSERT_TRUE(editor.gesture() && editor.gesture()->custom) << editor.detectedText().toStdString();
    pickAction(editor, "close tab");
    ASSERT_TRUE(editor.save());
    ASSERT_EQ(rig.store.bindings().size(), 1U);
    EXPECT_EQ(rig.store.bindings()[0].gesture.custom->name, offered);
    EXPECT_NE(rig.store.nextCustomName(), offered);
}

}  // namespace
}  // namespace ostrelle::app
