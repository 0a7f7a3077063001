#include "desktop/views/common/Picture.h"

#include <QtGui/QPainter>

#include "desktop/render/QtImage.h"
#include "desktop/views/common/Shapes.h"

namespace quenlio {

QImage pixelsOf(const ImageRef& image) {
  const auto* qtImage = dynamic_cast<const QtImage*>(image.get());
  return qtImage != nullptr ? qtImage->image() : QImage();
}

QRect pictureOnCanvas(const ImageRef& image) {
  const auto* qtImage = dynamic_cast<const QtImage*>(image.get());
  if (qtImage == nullptr || qtImage->image().isNull()) {
    return {};
  }
  // What rounding has pushed over a pixel's edge is none of it.
  constexpr double fuzz = 1e-6;
  const QRectF exact = qtImage->picture().adjusted(fuzz, fuzz, -fuzz, -fuzz);
  return exact.toAlignedRect() & qtImage->image().rect();
}

QSizeF ownSizeOf(const ImageRef& image) {
  const auto* qtImage = dynamic_cast<const QtImage*>(image.get());
  return qtImage != nullptr ? QSizeF(qtImage->ownSize().width, qtImage->ownSize().height) : QSizeF(0, 0);
}

QSize fitted(const QSize& shape, const QSize& bounds) {
  return shape.scaled(bounds, Qt::KeepAspectRatio).expandedTo(QSize(1, 1));
}

QRect croppedTo(const QRect& source, const QSize& size) {
  QRect cropped(QPoint(), fitted(size, source.size()));
  cropped.moveCenter(source.center());
  return cropped;
}

QImage scaledPart(const QImage& image, const QRect& source, const QSize& size) {
  const QImage part = source == image.rect() ? image : image.copy(source);
  const QImage scaled = part.size() == size ? part : part.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  QImage result = scaled.convertToFormat(QImage::Format_ARGB32_Premultiplied);
  // A copy keeps the density of its image, by which painting into it would be scaled.
  result.setDevicePixelRatio(1);
  return result;
}

void roundCorners(QImage& picture, double radius) {
  QPainterPath corners = continuousRectanglePath(picture.rect(), radius);
  corners.addRect(QRectF(picture.rect()));
  corners.setFillRule(Qt::OddEvenFill);
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
  painter.fillPath(corners, Qt::black);
}

QImage roundedPicture(const QImage& image, const QRect& source, const QSize& size, double radius) {
  QImage result = scaledPart(image, source, size);
  roundCorners(result, radius);
  return result;
}

}  // namespace quenlio
