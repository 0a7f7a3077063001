#include "desktop/views/island/ThumbnailCell.h"

#include <QtGui/QPainter>
#include <cmath>

#include "desktop/views/common/Picture.h"
#include "desktop/views/common/Pixels.h"

namespace quenlio {
namespace {

constexpr double kUnselectedOpacity = 0.92;
constexpr double kRing = 2;     // the selected cell's ring, points
constexpr double kRingGap = 1;  // between the ring and the picture

}  // namespace

ThumbnailCell::ThumbnailCell(QWidget* parent) : PaintedButton(parent) {}

void ThumbnailCell::apply(const IslandPalette& palette, const IslandLayoutMetrics& metrics) {
  palette_ = palette;
  radius_ = metrics.thumbRadius;
  update();
}

void ThumbnailCell::show(const ScreenshotItem& item, bool isSelected) {
  const QString name = QString::fromStdString(item.fileURL.lastPathComponent());
  if (name != accessibleName()) {
    setAccessibleName(name);
  }
  if (thumbnail_ != item.thumbnail || isSelected_ != isSelected) {
    thumbnail_ = item.thumbnail;
    isSelected_ = isSelected;
    picture_ = {};
    setAccessibleDescription(isSelected ? QStringLiteral("selected") : QString());
    update();
  }
}

void ThumbnailCell::setEdgeOpacity(double opacity) {
  if (edgeOpacity_ != opacity) {
    edgeOpacity_ = opacity;
    update();
  }
}

const QImage& ThumbnailCell::pictureAt(const QSize& pixels, double radius) {
  const QImage canvas = pixelsOf(thumbnail_);
  if (picture_.size() != pixels && !canvas.isNull()) {
    picture_ = roundedPicture(canvas, croppedTo(pictureOnCanvas(thumbnail_), pixels), pixels, radius);
  }
  return picture_;
}

void ThumbnailCell::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const bool bright = isSelected_ || isHovered();
  painter.setOpacity(edgeOpacity_ * (bright ? 1 : kUnselectedOpacity));
  const QRectF cell = snappedToPixels(painter, rect());
  const double inset = isSelected_ ? kRing + kRingGap : 0;
  const QRectF plate = snappedToPixels(painter, cell.adjusted(inset, inset, -inset, -inset));
  const double plateRadius = std::max(2.0, radius_ - inset);
  fillRounded(painter, plate, plateRadius, palette_.plateFill);

  const double scale = pixelsAPoint(painter);
  const QSize pixels(static_cast<int>(std::lround(plate.width() * scale)),
                     static_cast<int>(std::lround(plate.height() * scale)));
  if (const QImage& picture = pictureAt(pixels, plateRadius * scale); !picture.isNull()) {
    painter.drawImage(plate, picture);
  }
  strokeInside(painter, plate, plateRadius, palette_.thumbnailStroke);
  if (isSelected_) {
    painter.setPen(QPen(palette_.selectedStroke, kRing));
    painter.drawRoundedRect(cell.adjusted(kRing / 2, kRing / 2, -kRing / 2, -kRing / 2), radius_ - kRing / 2,
                            radius_ - kRing / 2);
  }
  if (showsFocus()) {
    strokeInside(painter, cell, radius_, palette_.accent);
  }
}

}  // namespace quenlio
