#pragma once

#include <QColor>
#include <QPalette>

namespace ostrelle::app {

// Qt's palette has no role for warnings; these tones are picked to read on the palette's window
// colour, so they follow the system's light or dark scheme.
QColor errorTone(const QPalette& palette);
// A tone between the text and the window colour, for secondary marks (pad outlines, idle dots).
QColor quietTone(const QPalette& palette);

}  // namespace ostrelle::app
