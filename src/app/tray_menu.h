#pragma once

#include <QAction>
#include <QMenu>
#include <functional>

#include "engine/gesture_engine.h"

namespace ostrelle::app {

// The menu of the status icon, top to bottom: the "Active" switch bound to the engine's switch,
// "Open Ostrelle…" and "Quit Ostrelle" with the platform's quit shortcut.
class TrayMenu final : public QMenu {
  public:
    static constexpr const char* activeText = "Active";
    static constexpr const char* openText = "Open Ostrelle…";
    static constexpr const char* quitText = "Quit Ostrelle";

    TrayMenu(GestureEngine& engine, std::function<void()> open, std::function<void()> quit);
    ~TrayMenu() override;
    TrayMenu(const TrayMenu&) = delete;
    TrayMenu& operator=(const TrayMenu&) = delete;

    QAction* activeAction() const { return active_; }
    QAction* openAction() const { return open_; }
    QAction* quitAction() const { return quit_; }

  private:
    GestureEngine& engine_;
    QAction* active_;
    QAction* open_;
    QAction* quit_;
    ObserverList::Token engineUpdates_ = 0;
};

}  // namespace ostrelle::app
