// Takes a picture row by row and makes of it what is wanted, smaller or larger, with as little memory as that allows.
// Used by one thread at a time.
#pragma once

#include <QImage>
#include <cstdint>
#include <optional>

#include "desktop/render/AreaAverager.h"
#include "desktop/render/Placement.h"

namespace quenlio {

class PictureSink {
 public:
  // ok() is false when there is no memory for the result.
  PictureSink(QSize source, PixelLayout layout, const Placement& placement);

  [[nodiscard]] bool ok() const { return averager_ ? averager_->ok() : !whole_.isNull(); }

  // The next row from the top, its pixels in the given layout.
  void addRow(const std::uint8_t* row);

  // The result, after the last row.
  [[nodiscard]] QImage take();

 private:
  Placement placement_;
  PixelLayout layout_;
  std::optional<AreaAverager> averager_;
  QImage whole_;  // where the picture does not shrink
  int next_ = 0;
};

// A whole picture, placed. Null when there is no memory.
[[nodiscard]] QImage placedImage(const QImage& source, const Placement& placement);

// Multiplies the colours of one row of pixels, of four bytes with the alpha last, by their alpha.
void premultiply(std::uint8_t* row, int width);

}  // namespace quenlio
