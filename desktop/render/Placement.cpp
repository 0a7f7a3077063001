#include "desktop/render/Placement.h"

#include <algorithm>
#include <cmath>

namespace quenlio {

Placement placed(QSize source, const Fit& fit) {
  const double scale = std::min(static_cast<double>(fit.canvas.width()) / source.width(),
                                static_cast<double>(fit.canvas.height()) / source.height());
  if (fit.mode == Fit::Mode::centred) {
    const QSizeF drawn = QSizeF(source) * scale;
    const QPointF origin((fit.canvas.width() - drawn.width()) * 0.5, (fit.canvas.height() - drawn.height()) * 0.5);
    return {fit.canvas, QRectF(origin, drawn)};
  }
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
