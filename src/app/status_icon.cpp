#include "app/status_icon.h"

#include <QFile>
#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

#include "app/resources.h"

namespace ostrelle::app {
namespace {

constexpr int iconSizes[] = {16, 22, 24, 32, 48, 64, 96};
constexpr const char* sourcePath = ":/status_listening.svg";
// The colour the drawing is made in; replaced by the ink.
constexpr const char* sourceInk = "#000000";

QByteArray inkedSource(const QColor& ink) {
    loadResources();
    QFile file(QString::fromLatin1(sourcePath));
    if (!file.open(QIODevice::ReadOnly)) return {};
    QByteArray source = file.readAll();
    return source.replace(sourceInk, ink.name(QColor::HexRgb).toLatin1());
}

}  // namespace

QIcon statusIcon(bool active, const QColor& ink) {
    QSvgRenderer renderer(inkedSource(ink));
    QIcon icon;
    for (const int size : iconSizes) {
        QPixmap pixmap(size, size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setOpacity(active ? 1.0 : pausedOpacity);
        renderer.render(&painter);
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

}  // namespace ostrelle::app
