#pragma once

#include <QColor>
#include <QIcon>
#include <QString>

namespace ostrelle::app {

// What a screen reader and the tray's tool tip say of the status icon.
inline const QString activeIconName = QStringLiteral("Ostrelle, active");
inline const QString pausedIconName = QStringLiteral("Ostrelle, paused");

// How faint the icon is drawn while gestures are off.
constexpr double pausedOpacity = 0.35;

// The status image drawn from its vector source at every size a tray asks for, in `ink` (the
// panel's text colour, so it reads on light and dark panels alike); faded while paused.
QIcon statusIcon(bool active, const QColor& ink);

}  // namespace ostrelle::app
