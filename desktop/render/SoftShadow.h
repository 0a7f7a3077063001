// The soft shadow that a body with continuous corners throws on what lies behind it: only around the body, which may
// itself be translucent. Rendered once for a look, in as few pixels as its corners need, and stretched along the sides.
// Owned by the view that paints it; one thread.
#pragma once

#include <QtCore/QMargins>
#include <QtCore/QRectF>
#include <QtGui/QImage>
#include <vector>

QT_BEGIN_NAMESPACE
class QPainter;
QT_END_NAMESPACE

namespace quenlio {

// Black, of this opacity, blurred over the radius to either side of the body's edge and moved down. Points.
struct ShadowLayer {
  double opacity = 0;
  double radius = 0;
  double y = 0;
  bool operator==(const ShadowLayer&) const = default;
};

class SoftShadow {
 public:
  struct Look {
    double cornerRadius = 0;  // of the body, points
    std::vector<ShadowLayer> layers;
    bool operator==(const Look&) const = default;
  };

  void setLook(Look look);
  [[nodiscard]] const Look& look() const { return look_; }

  // How far it reaches beyond the body, in whole points.
  [[nodiscard]] QMargins margins() const;
  // Around this body, whose edges lie on whole device pixels. In whatever mode of composition the painter is.
  void paint(QPainter& painter, const QRectF& body);

 private:
  Look look_;
  QImage patch_;      // around a body that is only as large as its corners
  double scale_ = 0;  // device pixels a point of the patch
};

}  // namespace quenlio
