// The one place where the desktop's coordinates, y growing downward from the top left of all screens, and the
// program's, y growing upward from the bottom left of the primary screen, turn into one another. Main thread.
#pragma once

#include <QtCore/QPoint>
#include <QtCore/QRect>

#include "core/geometry/Geometry.h"

namespace quenlio {

class ScreenGeometry {
 public:
  // The primary screen in the desktop's coordinates, points.
  explicit ScreenGeometry(const QRect& primary) : left_(primary.x()), bottom_(primary.y() + primary.height()) {}
  // As the desktop is now.
  [[nodiscard]] static ScreenGeometry current();

  [[nodiscard]] Rect<Screen> fromQt(const QRect& rect) const;
  // The centre of the pixel: no edge of a rectangle of whole points runs through it, so that whether the pixel is
  // inside does not depend on which edges count.
  [[nodiscard]] Point<Screen> fromQt(const QPoint& point) const;
  // To whole points; origin and size are rounded apart, so that a size never flickers while a rectangle moves.
  [[nodiscard]] QRect toQt(const Rect<Screen>& rect) const;

 private:
  double left_;
  double bottom_;
};

}  // namespace quenlio
