#include "desktop/views/common/Picture.h"

#include <QtGui/QPainter>
#include <algorithm>

#include "desktop/render/QtImage.h"

namespace quenlio {
namespace {

bool isClearRow(const QImage& image, int y) {
  const auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
  return std::all_of(line, line + image.width(), [](QRgb pixel) { return qAlpha(pixel) == 0; });
}

bool isClearColumn(const QImage& image, int x) {
  for (int y = 0; y < image.height(); ++y) {
    if (qAlpha(reinterpret_cast<const QRgb*>(image.constScanLine(y))[x]) != 0) {
      return false;
    }
  }
  return true;
}

}  // namespace

QImage pixelsOf(const ImageRef& image) {
  const auto* qtImage = dynamic_cast<const QtImage*>(image.get());
  return qtImage != nullptr ? qtImage->image() : QImage();
}

QRect pictureOnCanvas(const QImage& canvas) {
  if (canvas.format() != QImage::Format_ARGB32_Premultiplied) {
    return canvas.rect();
  }
  int top = 0;
  while (2 * (top + 1) < canvas.height() && isClearRow(canvas, top) && isClearRow(canvas, canvas.height() - 1 - top)) {
    ++top;
  }
  int left = 0;
  while (2 * (left + 1) < canvas.width() && isClearColumn(canvas, left) &&
         isClearColumn(canvas, canvas.width() - 1 - left)) {
    ++left;
  }
  return canvas.rect().adjusted(left, top, -left, -top);
}

QSize fitted(const QSize& shape, const QSize& bounds) {
  return shape.scaled(bounds, Qt::KeepAspectRatio).expandedTo(QSize(1, 1));
}

QRect croppedTo(const QRect& source, const QSize& size) {
  QRect cropped(QPoint(), fitted(size, source.size()));
  cropped.moveCenter(source.center());
  return cropped;
}

QImage roundedPicture(const QImage& image, const QRect& source, const QSize& size, double radius) {
  const QImage part = source == image.rect() ? image : image.copy(source);
  const QImage scaled = part.size() == size ? part : part.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  QImage result = scaled.convertToFormat(QImage::Format_ARGB32_Premultiplied);
  QImage corners(size, QImage::Format_ARGB32_Premultiplied);
  corners.fill(Qt::transparent);
  QPainter mask(&corners);
  mask.setRenderHint(QPainter::Antialiasing);
  mask.setPen(Qt::NoPen);
  mask.setBrush(Qt::black);
  mask.drawRoundedRect(QRectF(corners.rect()), radius, radius);
  mask.end();
  QPainter painter(&result);
  painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
  painter.drawImage(0, 0, corners);
  painter.end();
  return result;
}

}  // namespace quenlio
