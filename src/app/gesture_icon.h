#pragma once

#include <QColor>
#include <QIcon>
#include <QPainter>
#include <QRectF>
#include <span>

#include "gestures/gesture.h"
#include "gestures/gesture_catalog.h"

namespace ostrelle::app {

// A gesture's picture: its catalog dots (each finger and what it does: rests, taps, double taps,
// presses, lifts or swipes with an arrow) on a faint pad, or a drawn shape's strokes. Drawn as
// vectors, so it is crisp at every size and scale.
void paintGestureDots(QPainter& painter, const QRectF& rect, std::span<const Dot> dots, const QColor& ink);
void paintGestureIcon(QPainter& painter, const QRectF& rect, const Gesture& gesture, const QColor& ink);

// An icon that paints the gesture when asked, in the application palette's text colour of the
// moment (highlighted text for a selected row, the disabled text colour when disabled).
QIcon gestureIcon(const Gesture& gesture);

}  // namespace ostrelle::app
