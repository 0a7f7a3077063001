#include "desktop/linux/session/ScreenGeometry.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QScreen>
#include <cmath>

namespace quenlio {
namespace {

int rounded(double value) {
  return static_cast<int>(std::lround(value));
}

}  // namespace

ScreenGeometry ScreenGeometry::current() {
  const QScreen* primary = QGuiApplication::primaryScreen();
  return ScreenGeometry(primary != nullptr ? primary->geometry() : QRect());
}

Rect<Screen> ScreenGeometry::fromQt(const QRect& rect) const {
  const double top = rect.y();
  const double height = rect.height();
  return {{rect.x() - left_, bottom_ - top - height}, {static_cast<double>(rect.width()), height}};
}

Point<Screen> ScreenGeometry::fromQt(const QPoint& point) const {
  return {point.x() + 0.5 - left_, bottom_ - point.y() - 0.5};
}

QRect ScreenGeometry::toQt(const Rect<Screen>& rect) const {
  return {rounded(rect.minX() + left_), rounded(bottom_ - rect.maxY()), rounded(rect.size.width),
          rounded(rect.size.height)};
}

}  // namespace quenlio
