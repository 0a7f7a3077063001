// A picture in memory as the views draw it. Immutable; any thread may hold it, read it and let go of it.
#pragma once

#include <QImage>
#include <QRectF>
#include <utility>

#include "core/platform/Image.h"

namespace quenlio {

class QtImage final : public Image {
 public:
  // The pixels are ARGB32_Premultiplied; the size is in points, whatever number of pixels it is drawn from. The picture
  // is the image as a whole.
  QtImage(const QImage& image, Size points) : QtImage(image, points, image.rect(), points) {}
  // A canvas, and where on it the picture stands, in pixels. Its pixels cannot tell: it may be clear at its own edges.
  // The picture's own size, in points, is that in its file, before it was made larger or smaller for the canvas.
  QtImage(QImage canvas, Size points, const QRectF& picture, Size ownSize)
      : image_(std::move(canvas)), points_(points), picture_(picture), ownSize_(ownSize) {}

  [[nodiscard]] Size size() const override { return points_; }
  [[nodiscard]] const QImage& image() const { return image_; }
  [[nodiscard]] const QRectF& picture() const { return picture_; }
  [[nodiscard]] Size ownSize() const { return ownSize_; }

 private:
  const QImage image_;
  const Size points_;
  const QRectF picture_;
  const Size ownSize_;
};

}  // namespace quenlio
