// The one place where the desktop's coordinates, y growing downward from the top left of the primary screen, and the
// program's, y growing upward from its bottom left, turn into one another. Main thread.
#pragma once

#include <QtCore/QPoint>
#include <QtCore/QRect>

#include "core/geometry/Geometry.h"

namespace quenlio {

class ScreenGeometry {
 public:
  // The height of the primary screen in points.
  explicit ScreenGeometry(double primaryHeight) : primaryHeight_(primaryHeight) {}
  // As the desktop is now.
  [[nodiscard]] static ScreenGeometry current();

  [[nodiscard]] Rect<Screen> fromQt(const QRect& rect) const;
  // The centre of the pixel: no edge of a rectangle of whole points runs through it, so that whether the pixel is
  // inside does not depend on which edges count.
  [[nodiscard]] Point<Screen> fromQt(const QPoint& point) const;
  // To whole points; origin and size are rounded apart, so that a size never flickers while a rectangle moves.
  [[nodiscard]] QRect toQt(const Rect<Screen>& rect) const;

 private:
  double primaryHeight_;
};

}  // namespace quenlio
