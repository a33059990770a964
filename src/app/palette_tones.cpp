#include "app/palette_tones.h"

namespace ostrelle::app {
namespace {

// A dark window needs a lighter red to keep the contrast of a light one.
constexpr int darkWindowLightness = 128;  // of 255: below it the window counts as dark
const QColor errorOnLight(176, 32, 32);
const QColor errorOnDark(255, 120, 110);

QColor mixed(const QColor& a, const QColor& b, double share) {
    return QColor::fromRgbF(static_cast<float>(a.redF() * (1 - share) + b.redF() * share),
                            static_cast<float>(a.greenF() * (1 - share) + b.greenF() * share),
                            static_cast<float>(a.blueF() * (1 - share) + b.blueF() * share));
}

}  // namespace

QColor errorTone(const QPalette& palette) {
    return palette.color(QPalette::Window).lightness() < darkWindowLightness ? errorOnDark : errorOnLight;
}

QColor quietTone(const QPalette& palette) {
    return mixed(palette.color(QPalette::WindowText), palette.color(QPalette::Window), 0.55);
}

}  // namespace ostrelle::app
