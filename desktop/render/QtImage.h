// A picture in memory as the views draw it. Immutable; any thread may hold it, read it and let go of it.
#pragma once

#include <QImage>
#include <utility>

#include "core/platform/Image.h"

namespace quenlio {

class QtImage final : public Image {
 public:
  // The pixels are ARGB32_Premultiplied; the size is in points, whatever number of pixels it is drawn from.
  QtImage(QImage image, Size points) : image_(std::move(image)), points_(points) {}

  [[nodiscard]] Size size() const override { return points_; }
  [[nodiscard]] const QImage& image() const { return image_; }

 private:
  const QImage image_;
  const Size points_;
};

}  // namespace quenlio
