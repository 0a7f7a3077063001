// The shapes that the views are made of. Pure functions; any thread.
#pragma once

#include <QtCore/QRectF>
#include <QtGui/QPainterPath>

namespace quenlio {

// A rectangle with continuous corners.
[[nodiscard]] QPainterPath continuousRectanglePath(const QRectF& rect, double radius);

}  // namespace quenlio
