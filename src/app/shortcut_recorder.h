#pragma once

#include <QLabel>
#include <QPushButton>
#include <QToolButton>
#include <QWidget>
#include <optional>

#include "actions/action_host.h"
#include "actions/key_shortcut.h"

namespace ostrelle::app {

// A field that records one key combination. Clicking it (or Space or Enter on it) starts
// recording; the next key pressed with its modifiers becomes the shortcut. Escape cancels,
// Backspace or Delete clears. A key the bindings file can't store is refused under the field.
class ShortcutRecorder final : public QWidget {
    Q_OBJECT

  public:
    static constexpr const char* recordingText = "Type a shortcut…";
    static constexpr const char* emptyText = "Record Shortcut";
    static constexpr const char* clearText = "Clear Shortcut";
    static constexpr const char* accessibleFieldName = "Keyboard shortcut";

    // The host names keys (its layout) and says how this desktop writes them; it must outlive this.
    explicit ShortcutRecorder(const ActionHost& host, QWidget* parent = nullptr);
    ~ShortcutRecorder() override;

    // Shows a shortcut without signalling `edited`; ends a recording in progress.
    void setShortcut(const std::optional<KeyShortcut>& shortcut);
    const std::optional<KeyShortcut>& shortcut() const { return shortcut_; }
    bool isRecording() const { return recording_; }
    void startRecording();
    void stopRecording();
    // A message under the field (an owner's error, such as a refused toggle key); empty hides it.
    void setError(const QString& message);
    QString error() const { return message_->text(); }
    // The shortcut as shown (layout key names, the desktop's modifier names).
    QString displayText(const KeyShortcut& shortcut) const;

  signals:
    // The owner of the toggle shortcut suspends it while this is true.
    void recordingChanged(bool recording);
    // The user recorded or cleared a shortcut.
    void edited(std::optional<KeyShortcut> shortcut);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    bool recordKey(const QKeyEvent& key);
    void commit(const std::optional<KeyShortcut>& shortcut);
    void refresh();

    const ActionHost& host_;
    std::optional<KeyShortcut> shortcut_;
    bool recording_ = false;
    QPushButton* field_;
    QToolButton* clear_;
    QLabel* message_;
};

}  // namespace ostrelle::app
