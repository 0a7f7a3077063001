#include "desktop/views/common/Shapes.h"

#include <QtGui/QPolygonF>

#include "core/geometry/ContinuousCorner.h"

namespace quenlio {
namespace {

struct View;

}  // namespace

QPainterPath continuousRectanglePath(const QRectF& rect, double radius) {
  QPolygonF outline;
  for (const Point<View>& at :
       continuousRectangle<View>({{rect.x(), rect.y()}, {rect.width(), rect.height()}}, radius)) {
    outline.append({at.x, at.y});
  }
  QPainterPath path;
  path.addPolygon(outline);
  path.closeSubpath();
  return path;
}

}  // namespace quenlio
