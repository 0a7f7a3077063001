#include "desktop/views/island/CloseButton.h"

#include <QtGui/QPainter>

#include "desktop/views/common/Pixels.h"

namespace quenlio {

CloseButton::CloseButton(QWidget* parent) : PaintedButton(parent) {
  setAccessibleName(QStringLiteral("Close"));
}

void CloseButton::apply(const IslandPalette& palette, double iconSize) {
  palette_ = palette;
  iconSize_ = iconSize;
  update();
}

void CloseButton::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF body = QRectF(rect()).adjusted(1, 1, -1, -1);
  if (isHovered() || isDown()) {
    fillRounded(painter, body, body.height() / 2, palette_.controlFill);
  }
  if (showsFocus()) {
    strokeInside(painter, body, body.height() / 2, palette_.accent);
  }
  QColor glyph = palette_.glyph;
  if (isDown()) {
    glyph.setAlphaF(glyph.alphaF() * 0.7F);
  }
  const double arm = iconSize_ * 0.26;
  const QPointF centre = QRectF(rect()).center();
  painter.setPen(QPen(glyph, iconSize_ / 10, Qt::SolidLine, Qt::RoundCap));
  painter.drawLine(centre + QPointF(-arm, -arm), centre + QPointF(arm, arm));
  painter.drawLine(centre + QPointF(-arm, arm), centre + QPointF(arm, -arm));
}

}  // namespace quenlio
