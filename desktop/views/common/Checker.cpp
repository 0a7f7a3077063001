#include "desktop/views/common/Checker.h"

#include <QtGui/QPainter>
#include <algorithm>
#include <cmath>

namespace quenlio {
namespace {

constexpr double kSquare = 6;  // points

}  // namespace

Checker Checker::forAppearance(bool isDark) {
  return isDark ? Checker{.light = qRgb(66, 67, 72), .dark = qRgb(54, 55, 60)}
                : Checker{.light = qRgb(255, 255, 255), .dark = qRgb(238, 239, 241)};
}

QBrush Checker::brush(double pixelsAPoint) const {
  const int square = std::max(1, static_cast<int>(std::lround(kSquare * pixelsAPoint)));
  QImage tile(2 * square, 2 * square, QImage::Format_RGB32);
  tile.fill(QColor::fromRgb(light));
  QPainter painter(&tile);
  painter.fillRect(square, 0, square, square, QColor::fromRgb(dark));
  painter.fillRect(0, square, square, square, QColor::fromRgb(dark));
  painter.end();
  return QBrush(tile);
}

bool hasClearPixels(const QImage& image) {
  for (int y = 0; y < image.height(); ++y) {
    const auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
    QRgb common = 0xff000000;  // of the whole line at once, which is a good deal faster than to stop at the first
    for (int x = 0; x < image.width(); ++x) {
      common &= line[x];
    }
    if (common != 0xff000000) {
      return true;
    }
  }
  return false;
}

}  // namespace quenlio
