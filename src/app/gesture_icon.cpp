#include "app/gesture_icon.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainterPath>
#include <QPalette>
#include <QPixmap>
#include <cmath>

namespace ostrelle::app {
namespace {

// Sizes as shares of the icon's side, so the picture scales as a whole.
constexpr double dotRadius = 0.085;
constexpr double ringRadius = 0.135;   // the second ring of a double tap
constexpr double strokeWidth = 0.035;  // outlines, rings and arrows
constexpr double arrowLength = 0.2;    // from the dot's edge to the arrow's tip
constexpr double arrowHead = 0.07;
constexpr double padInset = 0.03;
constexpr double padCorner = 0.16;
constexpr int padAlpha = 70;  // of 255: the pad stays in the background

void paintArrow(QPainter& painter, QPointF from, QPointF unit, double side) {
    const QPointF start = from + unit * (dotRadius * side);
    const QPointF tip = start + unit * (arrowLength * side);
    const QPointF across(-unit.y(), unit.x());
    painter.drawLine(start, tip);
    const QPointF back = tip - unit * (arrowHead * side);
    painter.drawPolyline(
        QPolygonF{back + across * (arrowHead * side), tip, back - across * (arrowHead * side)});
}

void paintDot(QPainter& painter, const Dot& dot, const QRectF& rect, const QColor& ink) {
    const double side = rect.width();
    const QPointF centre(rect.left() + dot.x * side, rect.top() + dot.y * side);
    const double radius = dotRadius * side;
    QPen outline(ink, strokeWidth * side, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    painter.setPen(outline);
    painter.setBrush(ink);
    switch (dot.role.kind) {
        case DotRole::Kind::rest:
            painter.setBrush(Qt::NoBrush);
            painter.drawEllipse(centre, radius, radius);
            break;
        case DotRole::Kind::tap:
            painter.drawEllipse(centre, radius, radius);
            break;
        case DotRole::Kind::doubleTap:
            painter.drawEllipse(centre, radius, radius);
            painter.setBrush(Qt::NoBrush);
            painter.drawEllipse(centre, ringRadius * side, ringRadius * side);
            break;
        case DotRole::Kind::press:
            // A pressed finger: a dot pushed into a wide ring.
            painter.drawEllipse(centre, radius * 0.6, radius * 0.6);
            outline.setWidthF(strokeWidth * side * 1.6);
            painter.setPen(outline);
            painter.setBrush(Qt::NoBrush);
            painter.drawEllipse(centre, radius * 1.25, radius * 1.25);
            break;
        case DotRole::Kind::lift:
            outline.setStyle(Qt::DotLine);
            painter.setPen(outline);
            painter.setBrush(Qt::NoBrush);
            painter.drawEllipse(centre, radius, radius);
            break;
        case DotRole::Kind::swipe:
            painter.drawEllipse(centre, radius, radius);
            if (dot.role.direction) {
                const Point unit = unitVector(*dot.role.direction);
                paintArrow(painter, centre, QPointF(unit.x, unit.y), side);
            }
            break;
    }
}

QRectF squareIn(const QRectF& rect) {
    const double side = std::min(rect.width(), rect.height());
    return {rect.center().x() - side / 2, rect.center().y() - side / 2, side, side};
}

void paintPad(QPainter& painter, const QRectF& square, QColor ink) {
    ink.setAlpha(padAlpha);
    painter.setPen(QPen(ink, strokeWidth * square.width() * 0.6));
    painter.setBrush(Qt::NoBrush);
    const double inset = padInset * square.width();
    const double corner = padCorner * square.width();
    painter.drawRoundedRect(square.adjusted(inset, inset, -inset, -inset), corner, corner);
}

void paintStrokes(QPainter& painter, const QRectF& square, const std::vector<Stroke>& strokes,
                  const QColor& ink) {
    // Strokes are in pad units; fit their bounds into the icon, keeping the aspect.
    double left = 1;
    double top = 1;
    double right = 0;
    double bottom = 0;
    for (const Stroke& stroke : strokes) {
        for (const Point& p : stroke) {
            left = std::min(left, p.x);
            top = std::min(top, p.y);
            right = std::max(right, p.x);
            bottom = std::max(bottom, p.y);
        }
    }
    if (right <= left && bottom <= top) return;
    const double span = std::max(right - left, bottom - top);
    const double margin = 0.22 * square.width();
    const double scale = (square.width() - 2 * margin) / span;
    const QPointF offset(square.left() + margin + ((span - (right - left)) / 2) * scale,
                         square.top() + margin + ((span - (bottom - top)) / 2) * scale);
    painter.setPen(QPen(ink, strokeWidth * square.width(), Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    for (const Stroke& stroke : strokes) {
        QPainterPath path;
        for (std::size_t i = 0; i < stroke.size(); ++i) {
            const QPointF at = offset + QPointF(stroke[i].x - left, stroke[i].y - top) * scale;
            if (i == 0)
                path.moveTo(at);
            else
                path.lineTo(at);
        }
        painter.drawPath(path);
    }
}

class GestureIconEngine final : public QIconEngine {
  public:
    explicit GestureIconEngine(Gesture gesture) : gesture_(std::move(gesture)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        const QPalette palette = QGuiApplication::palette();
        QColor ink = palette.color(QPalette::WindowText);
        if (mode == QIcon::Selected) ink = palette.color(QPalette::HighlightedText);
        if (mode == QIcon::Disabled) ink = palette.color(QPalette::Disabled, QPalette::WindowText);
        paintGestureIcon(*painter, rect, gesture_, ink);
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        return scaledPixmap(size, mode, state, 1.0);
    }
    QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State state, qreal scale) override {
        QPixmap pixmap(size * scale);
        pixmap.setDevicePixelRatio(scale);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(0, 0), size), mode, state);
        return pixmap;
    }
    QIconEngine* clone() const override { return new GestureIconEngine(gesture_); }

  private:
    Gesture gesture_;
};

}  // namespace

void paintGestureDots(QPainter& painter, const QRectF& rect, std::span<const Dot> dots, const QColor& ink) {
    const QRectF square = squareIn(rect);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    paintPad(painter, square, ink);
    for (const Dot& dot : dots) paintDot(painter, dot, square, ink);
    painter.restore();
}

void paintGestureIcon(QPainter& painter, const QRectF& rect, const Gesture& gesture, const QColor& ink) {
    if (gesture.custom) {
        const QRectF square = squareIn(rect);
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        paintPad(painter, square, ink);
        paintStrokes(painter, square, gesture.custom->strokes, ink);
        painter.restore();
        return;
    }
    const GestureDef* def = GestureCatalog::find(gesture.id);
    paintGestureDots(painter, rect, def ? std::span<const Dot>(def->dots) : std::span<const Dot>(), ink);
}

QIcon gestureIcon(const Gesture& gesture) {
    return QIcon(new GestureIconEngine(gesture));
}

}  // namespace ostrelle::app
