// How the strip is drawn on its canvas.
#include <QtGui/QPaintEvent>
#include <QtGui/QPainter>
#include <algorithm>

#include "desktop/views/common/Pixels.h"
#include "desktop/views/island/ThumbnailStrip.h"

namespace quenlio {

class ThumbnailStrip::Canvas final : public QWidget {
 public:
  Canvas(QWidget* parent, ThumbnailStrip& strip) : QWidget(parent), strip_(strip) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
  }

 protected:
  void paintEvent(QPaintEvent* event) override {
    QPainter painter(this);
    strip_.paintOn(painter, event->rect());
  }

 private:
  ThumbnailStrip& strip_;
};

QWidget* ThumbnailStrip::makeCanvas(QWidget* parent) {
  return new Canvas(parent, *this);
}

void ThumbnailStrip::repaint(const ThumbnailCell& cell) {
  const QRectF reach = cell.square().adjusted(-kBleed, -kBleed, kBleed, kBleed).translated(kBleed, kBleed);
  canvas_->update(reach.toAlignedRect());
}

// What fades is put together apart, or what lies below would fade with it.
void ThumbnailStrip::paintOn(QPainter& painter, const QRect& exposed) {
  painter.translate(kBleed, kBleed);
  const QRect seen = exposed.translated(-kBleed, -kBleed);
  if (stripLayout().furthest() <= 0) {
    paintCells(painter, seen);
    return;
  }
  const QTransform toDevice = painter.deviceTransform();
  const QRect pixels = toDevice.mapRect(QRectF(seen)).toAlignedRect();
  QImage layer(pixels.size(), QImage::Format_ARGB32_Premultiplied);
  layer.fill(Qt::transparent);
  QPainter apart(&layer);
  apart.setTransform(toDevice * QTransform::fromTranslate(-pixels.x(), -pixels.y()));
  paintCells(apart, seen);
  fadeEnds(apart);
  apart.end();
  layer.setDevicePixelRatio(pixelsAPoint(painter));
  painter.drawImage(toDevice.inverted().map(QPointF(pixels.topLeft())), layer);
}

void ThumbnailStrip::paintCells(QPainter& painter, const QRect& exposed) {
  ThumbnailCell* focused = showsFocus_ ? currentCell() : nullptr;
  for (const Uuid& id : order_) {
    ThumbnailCell* cell = cells_.at(id).cell;
    const QRectF reach = cell->square().adjusted(-kBleed, -kBleed, kBleed, kBleed);
    if (cell->isInSight() && reach.intersects(QRectF(exposed))) {
      cell->paint(
          painter,
          {.tokens = tokens_, .radius = metrics_.thumbRadius, .shadow = shadow_, .hasFocusRing = cell == focused});
    }
  }
}

// An end that is reached shows all; one with so much beyond that the canvas would cut it off is clear there.
void ThumbnailStrip::fadeEnds(QPainter& painter) const {
  const double reach = stripLayout().fadeReach();
  const auto strength = [](double beyond) { return std::clamp(beyond / kBleed, 0.0, 1.0); };
  const double left = strength(scroll_.value());
  const double right = strength(stripLayout().furthest() - scroll_.value());
  const auto opacity = [](double share) { return QColor::fromRgbF(0, 0, 0, static_cast<float>(share)); };
  painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
  const double top = -kBleed;
  const double high = height() + 2 * kBleed;
  QLinearGradient fromLeft(0, 0, reach, 0);
  fromLeft.setColorAt(0, opacity(1 - left));
  fromLeft.setColorAt(1, opacity(1));
  painter.fillRect(QRectF(-kBleed, top, kBleed + reach, high), fromLeft);
  QLinearGradient fromRight(width() - reach, 0, width(), 0);
  fromRight.setColorAt(0, opacity(1));
  fromRight.setColorAt(1, opacity(1 - right));
  painter.fillRect(QRectF(width() - reach, top, kBleed + reach, high), fromRight);
}

}  // namespace quenlio
