#include "desktop/render/Placement.h"

#include <algorithm>
#include <cmath>

namespace quenlio {

QRectF centred(const QSizeF& shape, QSize canvas) {
  const QSizeF drawn = shape.scaled(canvas, Qt::KeepAspectRatio);
  return {QPointF((canvas.width() - drawn.width()) / 2, (canvas.height() - drawn.height()) / 2), drawn};
}

Placement placed(QSize source, const Fit& fit) {
  if (fit.mode == Fit::Mode::centred) {
    return {fit.canvas, centred(source, fit.canvas)};
  }
  const double scale = std::min(static_cast<double>(fit.canvas.width()) / source.width(),
                                static_cast<double>(fit.canvas.height()) / source.height());
  const double bounded = fit.mode == Fit::Mode::within ? std::min(scale, 1.0) : scale;
  const auto side = [bounded](int length) { return std::max(1, static_cast<int>(std::lround(length * bounded))); };
  const QSize canvas(side(source.width()), side(source.height()));
  return {canvas, QRectF(QPointF(0, 0), QSizeF(canvas))};
}

int pixelsAPoint(double dotsAnInch) {
  const double rounded = std::round(dotsAnInch);
  return rounded == 144 ? 2 : rounded == 216 ? 3 : 1;
}

int pixelsAPointOfMetre(double dotsAMetre) {
  constexpr double metresAnInch = 0.0254;
  return pixelsAPoint(dotsAMetre * metresAnInch);
}

}  // namespace quenlio
