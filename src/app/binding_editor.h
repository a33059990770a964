#pragma once

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>
#include <QWidget>
#include <optional>

#include "app/app_context.h"
#include "store/gesture_binding.h"

namespace ostrelle::app {

class ActionPicker;
class TrackpadPreview;

// Edits one binding, new or saved: which gesture (from the catalog's list, or recorded on the
// trackpad with a live preview; a drawn shape gets a name) and which action. Saving refuses a
// gesture another binding already holds, saying which; deleting is left to the owner, which can
// undo it.
class BindingEditor final : public QWidget {
    Q_OBJECT

  public:
    static constexpr const char* newTitle = "New Gesture";
    static constexpr const char* editTitle = "Edit Gesture";
    static constexpr const char* gestureHeading = "&Gesture";
    static constexpr const char* actionHeading = "&Action";
    static constexpr const char* recordText = "&Record";
    static constexpr const char* stopText = "Stop &Recording";
    static constexpr const char* recordingPrompt = "Perform a gesture on the trackpad…";
    static constexpr const char* detectedPrefix = "Detected: ";
    static constexpr const char* nameLabel = "&Name";
    static constexpr const char* customGroupName = "Drawn Shapes";
    static constexpr const char* saveText = "&Save";
    static constexpr const char* deleteText = "&Delete";
    static constexpr const char* cancelText = "Cancel";
    static constexpr const char* noGestureError = "Pick a gesture from the list, or record one.";
    static constexpr const char* noActionError = "Pick an action for this gesture.";
    static constexpr const char* notSavedError = "The gesture couldn't be saved. Try again.";
    static constexpr const char* inUseText =
        "“%1” already runs “%2”. Pick another gesture, or change that one first.";
    static constexpr const char* gestureListName = "Gestures";

    // A new binding without `binding`, else that one. The context outlives the editor.
    BindingEditor(AppContext& context, std::optional<GestureBinding> binding, QWidget* parent = nullptr);
    ~BindingEditor() override;

    QSize sizeHint() const override;
    bool isRecording() const { return recording_; }
    void setRecording(bool recording);
    // The gesture as chosen or recorded (with the name typed for a drawn shape).
    std::optional<Gesture> gesture() const;
    ActionPicker& actionPicker() { return *picker_; }
    TrackpadPreview& preview() { return *preview_; }
    QString message() const { return message_->text(); }
    QString detectedText() const { return detected_->text(); }
    // Checks and saves; signals `saved` on success, shows why not otherwise.
    bool save();

  signals:
    void saved(QString id);
    void deleteRequested(QString id);
    void closed();

  protected:
    void hideEvent(QHideEvent* event) override;

  private:
    QWidget* buildGestureColumn();
    void fillTriggers();
    void selectGesture(const Gesture& gesture);
    void engineChanged();
    void triggerChanged();
    void showMessage(const QString& text);
    QString inUseMessage(const Gesture& gesture) const;

    AppContext& context_;
    std::optional<GestureBinding> binding_;
    std::optional<Gesture> custom_;  // a drawn shape: the one being edited or just recorded
    std::optional<std::string> seenDetection_;
    bool recording_ = false;
    ObserverList::Token engineToken_ = 0;

    QPushButton* record_;
    QLabel* prompt_;
    TrackpadPreview* preview_;
    QLabel* detectedIcon_;
    QLabel* detected_;
    QWidget* nameRow_;
    QLineEdit* name_;
    QTreeWidget* triggers_;
    ActionPicker* picker_;
    QLabel* message_;
};

}  // namespace ostrelle::app
