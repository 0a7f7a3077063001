// Makes a picture smaller while its rows come in, so that the whole of it is never in memory.
//
// Each pixel of the result is the exact mean of the area of the source that it covers, weighted by coverage, of
// premultiplied colours: no pixel of the source is left out, however far the picture shrinks, and transparent ones
// bleed no colour. Weights are differences of rounded positions, so that those of a covered pixel add up to one and an
// even colour comes out as it went in. Used by one thread at a time.
#pragma once

#include <QImage>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "desktop/render/Placement.h"

namespace quenlio {

// The bytes of one pixel of a row, in their order. Colours are premultiplied where there is an alpha.
enum class PixelLayout { bgra, rgba, rgb };

[[nodiscard]] constexpr std::size_t bytesAPixel(PixelLayout layout) {
  return layout == PixelLayout::rgb ? 3 : 4;
}

class AreaAverager {
 public:
  // The placed picture is nowhere larger than the source. ok() is false when there is no memory for the result.
  AreaAverager(QSize source, PixelLayout layout, const Placement& placement);

  [[nodiscard]] bool ok() const { return !image_.isNull(); }

  // The next row from the top, its pixels in the given layout.
  void addRow(const std::uint8_t* row);

  // The result, after the last row.
  [[nodiscard]] QImage take() { return std::move(image_); }

 private:
  void accumulate(const std::uint8_t* row, std::uint16_t weight);
  void finishRow();
  template <PixelLayout layout>
  void writeRow(QRgb* out) const;

  QImage image_;
  PixelLayout layout_;
  int height_;
  std::vector<std::uint32_t> columns_;  // where each column begins, and the last one ends, in parts of a result's pixel
  std::vector<std::uint32_t> rows_;     // the same for the rows
  std::vector<std::uint32_t> sums_;     // of the rows so far that belong to the present row of the result
  std::uint32_t rowCoverage_ = 0;       // how much of the present row's height they cover
  int next_ = 0;                        // the row of the source that comes next
  int present_ = 0;                     // the row of the result that is being summed up
};

}  // namespace quenlio
