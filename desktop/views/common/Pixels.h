// Drawing on whole device pixels, at every scale of the screen. Main thread.
#pragma once

#include <QtCore/QRectF>
#include <QtGui/QBrush>

QT_BEGIN_NAMESPACE
class QPainter;
QT_END_NAMESPACE

namespace quenlio {

// The rectangle with its edges moved to the nearest boundaries between device pixels.
[[nodiscard]] QRectF snappedToPixels(const QPainter& painter, const QRectF& rect);

// How long one point is in device pixels under this painter.
[[nodiscard]] double pixelsAPoint(const QPainter& painter);

// A line along continuous corners, of one point, rounded down to whole device pixels and at least one of them, just
// inside the rectangle.
void strokeInside(QPainter& painter, const QRectF& rect, double radius, const QBrush& brush);

// Filled, with smooth edges and continuous corners.
void fillRounded(QPainter& painter, const QRectF& rect, double radius, const QBrush& brush);

}  // namespace quenlio
