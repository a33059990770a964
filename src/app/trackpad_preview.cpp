#include "app/trackpad_preview.h"

#include <QPaintEvent>
#include <QPainter>
#include <cmath>

#include "app/palette_tones.h"

namespace ostrelle::app {
namespace {

// In multiples of the font's line height, so the pad grows with the text at higher scaling.
constexpr int hintLines = 11;
constexpr int minimumLines = 6;
constexpr double fingerRadius = 0.045;  // of the pad's height: about a fingertip's share
constexpr double strokeWidth = 0.012;   // of the pad's height
constexpr double cornerRadius = 0.08;   // of the pad's height
constexpr double outlineWidth = 1.5;    // logical pixels

}  // namespace

TrackpadPreview::TrackpadPreview(LiveTrace& trace, QWidget* parent)
    : QWidget(parent), trace_(trace), token_(trace.observers.add([this] { update(); })) {
    setAccessibleName(QString::fromUtf8(accessibleText));
    setAttribute(Qt::WA_OpaquePaintEvent, false);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    line_.reserve(64);
}

TrackpadPreview::~TrackpadPreview() {
    trace_.observers.remove(token_);
}

QSize TrackpadPreview::sizeHint() const {
    const int height = fontMetrics().height() * hintLines;
    return {static_cast<int>(std::lround(height * padAspect)), height};
}

QSize TrackpadPreview::minimumSizeHint() const {
    const int height = fontMetrics().height() * minimumLines;
    return {static_cast<int>(std::lround(height * padAspect)), height};
}

int TrackpadPreview::heightForWidth(int width) const {
    return static_cast<int>(std::lround(width / padAspect));
}

QRectF TrackpadPreview::padRect() const {
    const QRectF area = QRectF(rect()).adjusted(outlineWidth, outlineWidth, -outlineWidth, -outlineWidth);
    double width = area.width();
    double height = width / padAspect;
    if (height > area.height()) {
        height = area.height();
        width = height * padAspect;
    }
    return {area.center().x() - width / 2, area.center().y() - height / 2, width, height};
}

void TrackpadPreview::paintEvent(QPaintEvent*) {
    ++paints_;
    const QRectF pad = padRect();
    const double unit = pad.height();
    const QPalette& colours = palette();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);

    painter.setPen(QPen(quietTone(colours), outlineWidth));
    painter.setBrush(colours.color(QPalette::Base));
    painter.drawRoundedRect(pad, cornerRadius * unit, cornerRadius * unit);

    const QColor ink = colours.color(QPalette::Highlight);
    painter.setPen(QPen(ink, strokeWidth * unit, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    for (const Stroke& stroke : trace_.strokes()) {
        line_.clear();
        for (const Point& p : stroke)
            line_.emplace_back(pad.left() + p.x * pad.width(), pad.top() + p.y * pad.height());
        painter.drawPolyline(line_.data(), static_cast<int>(line_.size()));
    }

    painter.setPen(Qt::NoPen);
    painter.setBrush(ink);
    const double radius = fingerRadius * unit;
    for (const Contact& contact : trace_.contacts()) {
        painter.drawEllipse(
            QPointF(pad.left() + contact.x * pad.width(), pad.top() + contact.y * pad.height()), radius,
            radius);
    }
}

}  // namespace ostrelle::app
