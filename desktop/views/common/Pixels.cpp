#include "desktop/views/common/Pixels.h"

#include <QtGui/QPainter>
#include <algorithm>
#include <cmath>

#include "desktop/views/common/Shapes.h"

namespace quenlio {

QRectF snappedToPixels(const QPainter& painter, const QRectF& rect) {
  const QTransform& toDevice = painter.deviceTransform();
  const QRectF device = toDevice.mapRect(rect);
  const QRectF whole(QPointF(std::round(device.left()), std::round(device.top())),
                     QPointF(std::round(device.right()), std::round(device.bottom())));
  return toDevice.inverted().mapRect(whole);
}

double pixelsAPoint(const QPainter& painter) {
  return painter.deviceTransform().m11();
}

void strokeInside(QPainter& painter, const QRectF& rect, double radius, const QBrush& brush) {
  const double scale = pixelsAPoint(painter);
  const double width = std::max(1.0, std::floor(scale)) / scale;
  const QRectF line = rect.adjusted(width / 2, width / 2, -width / 2, -width / 2);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(brush, width));
  painter.setBrush(Qt::NoBrush);
  painter.drawPath(continuousRectanglePath(line, std::max(0.0, radius - width / 2)));
}

void fillRounded(QPainter& painter, const QRectF& rect, double radius, const QBrush& brush) {
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(brush);
  painter.drawPath(continuousRectanglePath(rect, radius));
}

}  // namespace quenlio
