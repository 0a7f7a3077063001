#include "desktop/render/PictureSink.h"

#include <QPainter>
#include <cstddef>

namespace quenlio {
namespace {

void copyRow(const std::uint8_t* row, PixelLayout layout, QRgb* out, int width) {
  const std::size_t step = bytesAPixel(layout);
  const std::size_t red = layout == PixelLayout::bgra ? 2 : 0;
  for (int x = 0; x < width; ++x, row += step) {
    const unsigned alpha = step == 4 ? row[3] : 0xFFU;
    out[x] = alpha << 24 | unsigned{row[red]} << 16 | unsigned{row[1]} << 8 | unsigned{row[2 - red]};
  }
}

}  // namespace

PictureSink::PictureSink(QSize source, PixelLayout layout, const Placement& placement)
    : placement_(placement), layout_(layout) {
  const QSizeF drawn = placement.picture.size();
  const bool unchanged = placement.canvas == source && drawn == QSizeF(source);
  if (!unchanged && drawn.width() <= source.width() && drawn.height() <= source.height()) {
    averager_.emplace(source, layout, placement);
  } else {
    whole_ = QImage(source, QImage::Format_ARGB32_Premultiplied);
  }
}

void PictureSink::addRow(const std::uint8_t* row) {
  if (averager_) {
    averager_->addRow(row);
  } else if (next_ < whole_.height()) {
    copyRow(row, layout_, reinterpret_cast<QRgb*>(whole_.scanLine(next_++)), whole_.width());
  }
}

QImage PictureSink::take() {
  if (averager_) {
    return averager_->take();
  }
  if (placement_.canvas == whole_.size() && placement_.picture.size() == QSizeF(whole_.size())) {
    return whole_;
  }
  QImage canvas(placement_.canvas, QImage::Format_ARGB32_Premultiplied);
  if (canvas.isNull()) {
    return canvas;
  }
  canvas.fill(Qt::transparent);
  QPainter painter(&canvas);
  painter.setRenderHints(QPainter::SmoothPixmapTransform | QPainter::Antialiasing);
  painter.drawImage(placement_.picture, whole_);
  painter.end();
  return canvas;
}

QImage placedImage(const QImage& source, const Placement& placement) {
  const QImage pixels = source.convertToFormat(QImage::Format_ARGB32_Premultiplied);
  PictureSink sink(pixels.size(), PixelLayout::bgra, placement);
  if (pixels.isNull() || !sink.ok()) {
    return {};
  }
  for (int y = 0; y < pixels.height(); ++y) {
    sink.addRow(pixels.constScanLine(y));
  }
  return sink.take();
}

void premultiply(std::uint8_t* row, int width) {
  const auto count = static_cast<std::size_t>(width);
  // Most captures have an alpha channel and are opaque all over: one look spares them the multiplying.
  std::uint8_t all = 0xFF;
  for (std::size_t x = 0; x < count; ++x) {
    all &= row[x * 4 + 3];
  }
  if (all == 0xFF) {
    return;
  }
  for (std::size_t x = 0; x < count; ++x) {
    std::uint8_t* const pixel = row + x * 4;
    const unsigned alpha = pixel[3];
    for (int c = 0; c < 3; ++c) {
      const unsigned product = pixel[c] * alpha + 128;  // rounded division by 255
      pixel[c] = static_cast<std::uint8_t>((product + (product >> 8)) >> 8);
    }
  }
}

}  // namespace quenlio
