#include "app/tray_menu.h"

namespace ostrelle::app {

TrayMenu::TrayMenu(GestureEngine& engine, std::function<void()> open, std::function<void()> quit)
    : engine_(engine) {
    active_ = addAction(QString::fromUtf8(activeText));
    active_->setCheckable(true);
    active_->setChecked(engine.isEnabled());
    connect(active_, &QAction::toggled, this, [this](bool on) {
        if (on != engine_.isEnabled()) engine_.setEnabled(on);
    });
    addSeparator();
    open_ = addAction(QString::fromUtf8(openText));
    connect(open_, &QAction::triggered, this, [open = std::move(open)] { open(); });
    addSeparator();
    quit_ = addAction(QString::fromUtf8(quitText));
    quit_->setShortcut(QKeySequence::Quit);
    quit_->setShortcutVisibleInContextMenu(true);
    connect(quit_, &QAction::triggered, this, [quit = std::move(quit)] { quit(); });
    engineUpdates_ = engine.observers.add([this] { active_->setChecked(engine_.isEnabled()); });
}

TrayMenu::~TrayMenu() {
    engine_.observers.remove(engineUpdates_);
}

}  // namespace ostrelle::app
