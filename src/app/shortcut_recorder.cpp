#include "app/shortcut_recorder.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QVBoxLayout>
#include <array>

#include "actions/linux_actions.h"
#include "actions/linux_chord.h"
#include "app/palette_tones.h"

namespace ostrelle::app {
namespace {

// X11 and Wayland (xkb) key codes are the kernel's evdev codes plus this.
constexpr quint32 xkbKeyCodeOffset = 8;

// Pressed alone they only prepare a combination: recording waits for the key that completes it.
constexpr std::array modifierKeys{Qt::Key_Control, Qt::Key_Shift,    Qt::Key_Alt,     Qt::Key_AltGr,
                                  Qt::Key_Meta,    Qt::Key_Super_L,  Qt::Key_Super_R, Qt::Key_Hyper_L,
                                  Qt::Key_Hyper_R, Qt::Key_CapsLock, Qt::Key_NumLock};

std::uint8_t chordModifiers(Qt::KeyboardModifiers modifiers) {
    std::uint8_t bits = 0;
    if (modifiers.testFlag(Qt::ControlModifier)) bits |= LinuxChord::ctrl;
    if (modifiers.testFlag(Qt::AltModifier)) bits |= LinuxChord::alt;
    if (modifiers.testFlag(Qt::ShiftModifier)) bits |= LinuxChord::shift;
    if (modifiers.testFlag(Qt::MetaModifier)) bits |= LinuxChord::super;
    return bits;
}

bool isBare(const QKeyEvent& key, Qt::Key which) {
    return key.key() == which && (key.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
}

}  // namespace

ShortcutRecorder::ShortcutRecorder(const ActionHost& host, QWidget* parent)
    : QWidget(parent),
      host_(host),
      field_(new QPushButton(this)),
      clear_(new QToolButton(this)),
      message_(new QLabel(this)) {
    auto* row = new QHBoxLayout;
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(field_, 1);
    row->addWidget(clear_);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addLayout(row);
    column->addWidget(message_);

    field_->setCheckable(true);
    field_->setAutoDefault(false);
    field_->installEventFilter(this);
    setFocusProxy(field_);
    connect(field_, &QPushButton::clicked, this, [this] { recording_ ? stopRecording() : startRecording(); });

    clear_->setIcon(QIcon::fromTheme(QStringLiteral("edit-clear")));
    clear_->setText(QString::fromUtf8(clearText));
    clear_->setToolTip(QString::fromUtf8(clearText));
    clear_->setAccessibleName(QString::fromUtf8(clearText));
    clear_->setFocusPolicy(Qt::TabFocus);
    connect(clear_, &QToolButton::clicked, this, [this] { commit(std::nullopt); });

    message_->setWordWrap(true);
    message_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    message_->hide();
    refresh();
}

ShortcutRecorder::~ShortcutRecorder() {
    // An owner that suspended its toggle key for the recording must hear that it ended.
    if (recording_) emit recordingChanged(false);
}

void ShortcutRecorder::setShortcut(const std::optional<KeyShortcut>& shortcut) {
    stopRecording();
    shortcut_ = shortcut;
    refresh();
}

void ShortcutRecorder::startRecording() {
    if (recording_) return;
    recording_ = true;
    field_->setFocus(Qt::OtherFocusReason);
    refresh();
    emit recordingChanged(true);
}

void ShortcutRecorder::stopRecording() {
    if (!recording_) return;
    recording_ = false;
    refresh();
    emit recordingChanged(false);
}

void ShortcutRecorder::setError(const QString& message) {
    message_->setText(message);
    message_->setVisible(!message.isEmpty());
    field_->setAccessibleDescription(message);
}

QString ShortcutRecorder::displayText(const KeyShortcut& shortcut) const {
    if (host_.linuxActions) {
        return QString::fromStdString(
            linuxDisplay(shortcut, host_.keyboardLayout, host_.linuxActions->desktop()));
    }
    return QString::fromStdString(shortcut.display(host_.keyboardLayout));
}

bool ShortcutRecorder::eventFilter(QObject* watched, QEvent* event) {
    if (watched != field_ || !recording_) return QWidget::eventFilter(watched, event);
    switch (event->type()) {
        case QEvent::ShortcutOverride:
            // The window's own shortcuts and mnemonics must not take the key being recorded.
            event->accept();
            return true;
        case QEvent::KeyPress:
            return recordKey(*static_cast<QKeyEvent*>(event));
        case QEvent::FocusOut:
            stopRecording();
            return false;
        default:
            return QWidget::eventFilter(watched, event);
    }
}

bool ShortcutRecorder::recordKey(const QKeyEvent& key) {
    if (isBare(key, Qt::Key_Escape)) {
        stopRecording();
    } else if (isBare(key, Qt::Key_Backspace) || isBare(key, Qt::Key_Delete)) {
        commit(std::nullopt);
    } else if (std::ranges::find(modifierKeys, key.key()) == modifierKeys.end() &&
               key.nativeScanCode() >= xkbKeyCodeOffset) {
        const auto evdevKey = static_cast<std::uint16_t>(key.nativeScanCode() - xkbKeyCodeOffset);
        const RecordedLinuxKey recorded = shortcutFromLinux(evdevKey, chordModifiers(key.modifiers()));
        if (recorded.shortcut) {
            commit(recorded.shortcut);
        } else {
            stopRecording();
            setError(QString::fromStdString(recorded.refusal));
        }
    }
    // Every key belongs to the recording while it lasts, Tab included.
    return true;
}

void ShortcutRecorder::commit(const std::optional<KeyShortcut>& shortcut) {
    setError({});
    const bool changed = shortcut != shortcut_;
    shortcut_ = shortcut;
    stopRecording();
    refresh();
    if (changed) emit edited(shortcut_);
}

void ShortcutRecorder::hideEvent(QHideEvent* event) {
    stopRecording();
    QWidget::hideEvent(event);
}

void ShortcutRecorder::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange) refresh();
    QWidget::changeEvent(event);
}

void ShortcutRecorder::refresh() {
    const QString shown = shortcut_ ? displayText(*shortcut_) : QString();
    field_->setChecked(recording_);
    field_->setText(recording_  ? QString::fromUtf8(recordingText)
                    : shortcut_ ? shown
                                : QString::fromUtf8(emptyText));
    field_->setAccessibleName(QString::fromUtf8(accessibleFieldName));
    clear_->setVisible(shortcut_.has_value() && !recording_);
    QPalette tones = message_->palette();
    tones.setColor(QPalette::WindowText, errorTone(palette()));
    message_->setPalette(tones);
}

}  // namespace ostrelle::app
