#include "app/shortcut_recorder.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QKeyEvent>
#include <QSignalSpy>
#include <QTest>
#include <functional>

#include "actions/linux_actions.h"

namespace ostrelle::app {
namespace {

// X11 key codes as a keyboard sends them: the kernel's code plus 8.
constexpr quint32 keyK = 37 + 8;
constexpr quint32 keyTab = 15 + 8;
constexpr quint32 keyPrint = 99 + 8;  // no Mac counterpart
constexpr quint32 keyLeftCtrl = 29 + 8;

void press(QWidget* field, Qt::Key key, Qt::KeyboardModifiers modifiers, quint32 scanCode) {
    QKeyEvent event(QEvent::KeyPress, key, modifiers, scanCode, 0, 0);
    QApplication::sendEvent(field, &event);
}

TEST(ShortcutRecorder, RecordsRefusesCancelsAndClears) {
    const KeyShortcut ctrlAltT{17, EventFlag::control | EventFlag::option};
    struct Row {
        const char* name;
        std::function<void(QWidget*)> keys;
        std::optional<KeyShortcut> shortcut;
        QString shown;
        bool refused;
    };
    const std::vector<Row> rows{
        {"a modifier alone waits for its key",
         [](QWidget* field) {
             press(field, Qt::Key_Control, Qt::ControlModifier, keyLeftCtrl);
             press(field, Qt::Key_K, Qt::ControlModifier | Qt::ShiftModifier, keyK);
         },
         KeyShortcut{40, EventFlag::control | EventFlag::shift}, "Ctrl+Shift+K", false},
        {"Tab is recorded, not a focus move; KDE says Meta",
         [](QWidget* field) { press(field, Qt::Key_Tab, Qt::MetaModifier, keyTab); },
         KeyShortcut{48, EventFlag::command}, "Meta+Tab", false},
        {"a key without a Mac counterpart is refused and the old one kept",
         [](QWidget* field) { press(field, Qt::Key_Print, Qt::ControlModifier, keyPrint); }, ctrlAltT,
         "Ctrl+Alt+T", true},
        {"Escape cancels", [](QWidget* field) { press(field, Qt::Key_Escape, Qt::NoModifier, 9); }, ctrlAltT,
         "Ctrl+Alt+T", false},
        {"Backspace clears", [](QWidget* field) { press(field, Qt::Key_Backspace, Qt::NoModifier, 22); },
         std::nullopt, ShortcutRecorder::emptyText, false},
    };
    const LinuxActions kde(LinuxDesktop::kde);
    const ActionHost host{nullptr, nullptr, std::nullopt, &kde};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        ShortcutRecorder recorder(host);
        recorder.setShortcut(ctrlAltT);
        recorder.setError("an earlier error");
        recorder.show();
        auto* field = qobject_cast<QPushButton*>(recorder.focusProxy());
        ASSERT_NE(field, nullptr);
        QSignalSpy recording(&recorder, &ShortcutRecorder::recordingChanged);
        QSignalSpy edited(&recorder, &ShortcutRecorder::edited);

        QTest::keyClick(field, Qt::Key_Space);
        EXPECT_EQ(field->text(), ShortcutRecorder::recordingText);
        row.keys(field);

        EXPECT_FALSE(recorder.isRecording());
        EXPECT_EQ(recorder.shortcut(), row.shortcut);
        EXPECT_EQ(field->text(), row.shown);
        ASSERT_EQ(recording.count(), 2);
        EXPECT_TRUE(recording[0][0].toBool());
        EXPECT_FALSE(recording[1][0].toBool());
        EXPECT_EQ(edited.count(), row.shortcut == ctrlAltT ? 0 : 1);
        if (row.refused) {
            EXPECT_NE(recorder.error(), "an earlier error");
        } else if (edited.count() == 1) {
            EXPECT_EQ(recorder.error(), "") << "a recorded key clears an old error";
        }
    }
}

TEST(ShortcutRecorder, EndsARecordingWhenHiddenOrDestroyed) {
    const ActionHost host;
    std::vector<bool> heard;
    {
        ShortcutRecorder recorder(host);
        QObject::connect(&recorder, &ShortcutRecorder::recordingChanged,
                         [&](bool on) { heard.push_back(on); });
        recorder.show();
        QTest::mouseClick(recorder.focusProxy(), Qt::LeftButton);
        recorder.hide();
        recorder.show();
        QTest::mouseClick(recorder.focusProxy(), Qt::LeftButton);
    }
    EXPECT_EQ(heard, (std::vector<bool>{true, false, true, false}));
}

}  // namespace
}  // namespace ostrelle::app
