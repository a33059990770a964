#pragma once

#include <QProcess>
#include <QWidget>

#include "app/access_rule_command.h"
#include "engine/gesture_engine.h"

class QLabel;
class QPlainTextEdit;
class QPushButton;

namespace ostrelle::app {

// Shown while the touch source cannot read a touchpad: the reason, the platform's steps and, on
// Linux, one button that installs the access rule through pkexec (or the same command to copy).
// It follows the engine, which retries on its own every few seconds, and says `granted()` once
// the touchpad can be read; shown as a window, it then closes.
class PermissionGuide final : public QWidget {
    Q_OBJECT

  public:
    explicit PermissionGuide(GestureEngine& engine, QWidget* parent = nullptr);
    ~PermissionGuide() override;

  signals:
    void granted();

  private:
    void refresh();
    void install();
    void installFinished(int exitCode, QProcess::ExitStatus status);
    void installFailedToStart();
    void setStatus(const QString& text);

    GestureEngine& engine_;
    ObserverList::Token observer_ = 0;
    AccessRuleCommand command_;
    QLabel* error_;
    QLabel* status_;
    QPushButton* installButton_ = nullptr;
    QPlainTextEdit* commandText_ = nullptr;
    QProcess* process_ = nullptr;
    bool waiting_ = false;  // the touchpad could not be read when last seen
};

}  // namespace ostrelle::app
