#include "desktop/views/island/MainPreview.h"

#include <QtGui/QPainter>
#include <algorithm>
#include <cmath>
#include <utility>

#include "desktop/views/common/Picture.h"
#include "desktop/views/common/Pixels.h"

namespace quenlio {

MainPreview::MainPreview(QWidget* parent, SharpRendition sharpRendition)
    : QLabel(parent), sharpRendition_(std::move(sharpRendition)), scale_(devicePixelRatioF()) {}

void MainPreview::apply(const IslandPalette& palette, const IslandLayoutMetrics& metrics) {
  palette_ = palette;
  if (cornerRadius_ != metrics.previewCornerRadius || contentInset_ != metrics.previewContentInset) {
    cornerRadius_ = metrics.previewCornerRadius;
    contentInset_ = metrics.previewContentInset;
    picture_ = {};
    askForSharpIfNeeded();
  }
  update();
}

void MainPreview::show(const ScreenshotItem* item) {
  const QString name = item != nullptr ? QString::fromStdString(item->fileURL.lastPathComponent()) : QString();
  const QString spoken = item != nullptr ? name + QStringLiteral(" preview") : QStringLiteral("No preview");
  if (spoken != accessibleName()) {
    setAccessibleName(spoken);
  }
  auto next = item != nullptr ? std::optional(Shown{item->id, item->fileURL, item->thumbnail}) : std::nullopt;
  if (next == shown_) {
    return;
  }
  shown_ = std::move(next);
  inThumbnail_ = pictureOnCanvas(shown_ ? shown_->thumbnail : nullptr);
  forgetSharp();
  askForSharpIfNeeded();
  update();
}

void MainPreview::resizeEvent(QResizeEvent* /*event*/) {
  picture_ = {};
  askForSharpIfNeeded();
}

void MainPreview::showEvent(QShowEvent* /*event*/) {
  askForSharpIfNeeded();
}

void MainPreview::hideEvent(QHideEvent* /*event*/) {
  forgetSharp();
  picture_ = {};
}

QSize MainPreview::roomInPixels() const {
  return {static_cast<int>(std::floor((width() - 2 * contentInset_) * scale_)),
          static_cast<int>(std::floor((height() - 2 * contentInset_) * scale_))};
}

// In points. As the well's where the picture has room for that, and less on a small or narrow one: corners hold things
// that one has captured.
double MainPreview::pictureRadius(const QSizeF& size) const {
  return std::clamp(std::min(size.width(), size.height()) * 0.07, 2.0, cornerRadius_ - contentInset_);
}

void MainPreview::forgetSharp() {
  ++request_;
  sharp_ = {};
  picture_ = {};
  askedFor_ = {};
}

void MainPreview::askForSharpIfNeeded() {
  const QSize room = roomInPixels();
  if (!sharpRendition_ || !isVisible() || !shown_ || shown_->thumbnail == nullptr || inThumbnail_.isEmpty() ||
      room.isEmpty() || room == askedFor_) {
    return;
  }
  const QSize wanted = fitted(inThumbnail_.size(), room);
  if (wanted.width() <= inThumbnail_.width() && wanted.height() <= inThumbnail_.height()) {
    return;
  }
  askedFor_ = room;
  const std::uint64_t request = ++request_;
  sharpRendition_(shown_->url, room,
                  weak_.bind([request](MainPreview& self, const ImageRef& image) { self.takeSharp(request, image); }));
}

void MainPreview::takeSharp(std::uint64_t request, const ImageRef& image) {
  if (request != request_ || image == nullptr) {
    return;
  }
  sharp_ = pixelsOf(image);
  picture_ = {};
  update();
}

// A window that goes to a denser screen keeps its size in points: nothing but the painting tells.
void MainPreview::follow(double scale) {
  if (scale != scale_) {
    scale_ = scale;
    picture_ = {};
    askForSharpIfNeeded();
  }
}

void MainPreview::preparePicture() {
  if (!picture_.isNull() || !shown_) {
    return;
  }
  const QImage source = sharp_.isNull() ? pixelsOf(shown_->thumbnail) : sharp_;
  if (source.isNull()) {
    return;
  }
  const QRect part = sharp_.isNull() ? inThumbnail_ : source.rect();
  const QSize size = fitted(part.size(), roomInPixels());
  // A rendition that is a pixel off by rounding stays as it is: scaling it once more would only blur it.
  const bool fits = std::abs(part.width() - size.width()) <= 1 && std::abs(part.height() - size.height()) <= 1;
  const QSize pixels = fits ? part.size() : size;
  picture_ = roundedPicture(source, part, pixels, pictureRadius(QSizeF(pixels) / scale_) * scale_);
}

void MainPreview::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const QRectF well = snappedToPixels(painter, rect());
  fillRounded(painter, well, cornerRadius_, palette_.wellFill);
  follow(pixelsAPoint(painter));
  preparePicture();
  if (picture_.isNull()) {
    paintPlaceholder(painter);
  } else {
    QRectF place(QPointF(), QSizeF(picture_.size()) / scale_);
    place.moveCenter(well.center());
    // Whole device pixels, or the picture would be drawn between them.
    const QPointF corner = snappedToPixels(painter, place).topLeft();
    place.moveTopLeft(corner);
    painter.drawImage(place, picture_);
    strokeInside(painter, place, pictureRadius(place.size()), palette_.wellStroke);
  }
  strokeInside(painter, well, cornerRadius_, palette_.wellStroke);
}

// A picture's outline: a frame, a hill and the sun.
void MainPreview::paintPlaceholder(QPainter& painter) {
  const double side = std::clamp(height() * 0.30, 34.0, 72.0);
  QRectF frame(0, 0, side * 1.2, side * 0.92);
  frame.moveCenter(QRectF(rect()).center());
  QColor colour = palette_.textSecondary;
  colour.setAlphaF(colour.alphaF() * 0.65F);
  const double line = side / 18;
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(colour, line, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.setBrush(Qt::NoBrush);
  painter.drawRoundedRect(frame, side * 0.16, side * 0.16);
  const auto at = [&frame](double x, double y) {
    return QPointF(frame.left() + frame.width() * x, frame.top() + frame.height() * y);
  };
  const QPolygonF hills{at(0.10, 0.80), at(0.36, 0.50), at(0.54, 0.70), at(0.68, 0.56), at(0.90, 0.80)};
  painter.drawPolyline(hills);
  painter.drawEllipse(at(0.68, 0.30), side * 0.08, side * 0.08);
}

}  // namespace quenlio
