#pragma once

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QWidget>

#include "app/app_context.h"
#include "app/shortcut_recorder.h"

namespace ostrelle::app {

// The settings: the gesture switch, the global shortcut that toggles it (with why it can't be
// held, where it can't), haptic feedback where the platform has any, and update checks.
class SettingsPane final : public QWidget {
  public:
    static constexpr const char* activeText = "&Recognize gestures";
    static constexpr const char* toggleShortcutText = "Shortcut to turn gestures on or off:";
    static constexpr const char* hapticText = "&Haptic feedback when a gesture is recognized";
    static constexpr const char* automaticUpdatesText = "Check for updates &automatically";
    static constexpr const char* checkUpdatesText = "Check for &Updates…";

    explicit SettingsPane(AppContext& context, QWidget* parent = nullptr);
    ~SettingsPane() override;
    SettingsPane(const SettingsPane&) = delete;
    SettingsPane& operator=(const SettingsPane&) = delete;

    ShortcutRecorder& toggleShortcut() { return *toggleShortcut_; }

  private:
    void showEngine();

    AppContext& context_;
    QCheckBox* active_ = nullptr;
    ShortcutRecorder* toggleShortcut_ = nullptr;
    QCheckBox* haptic_ = nullptr;
    QCheckBox* automaticUpdates_ = nullptr;
    QPushButton* checkUpdates_ = nullptr;
    ObserverList::Token engineUpdates_ = 0;
};

}  // namespace ostrelle::app
