#include "desktop/render/AreaAverager.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace quenlio {
namespace {

// Positions are counted in parts of a pixel of the result: 2^15, so that a weight fits 16 bits with room for the whole.
constexpr int kFractionBits = 15;
constexpr std::uint32_t kWhole = 1U << kFractionBits;

std::vector<std::uint32_t> positions(int count, double origin, double length) {
  std::vector<std::uint32_t> result(static_cast<std::size_t>(count) + 1);
  for (int i = 0; i <= count; ++i) {
    const double position = origin + length * i / count;
    result[static_cast<std::size_t>(i)] = static_cast<std::uint32_t>(std::lround(std::max(position, 0.0) * kWhole));
  }
  return result;
}

// The sum over one pixel of the result, in 2^30ths.
template <PixelLayout layout>
struct PixelSum {
  std::array<std::uint64_t, bytesAPixel(layout)> channels{};

  void add(const std::uint32_t* sums, std::uint32_t weight) {
    for (std::size_t c = 0; c < channels.size(); ++c) {
      channels[c] += static_cast<std::uint64_t>(sums[c]) * weight;
    }
    if constexpr (layout == PixelLayout::rgb) {
      coverage += weight;
    }
  }

  [[nodiscard]] QRgb take(std::uint32_t rowCoverage) {
    const auto rounded = [](std::uint64_t sum) {
      return static_cast<unsigned>((sum + (1ULL << (2 * kFractionBits - 1))) >> (2 * kFractionBits));
    };
    constexpr bool blueFirst = layout == PixelLayout::bgra;
    unsigned alpha = 0;
    if constexpr (layout == PixelLayout::rgb) {
      alpha = rounded(std::uint64_t{255} * coverage * rowCoverage);
    } else {
      alpha = rounded(channels[3]);
    }
    const QRgb pixel = alpha << 24 | rounded(channels[blueFirst ? 2 : 0]) << 16 | rounded(channels[1]) << 8 |
                       rounded(channels[blueFirst ? 0 : 2]);
    *this = {};
    return pixel;
  }

  std::uint64_t coverage = 0;  // how much of the pixel's width the picture covers
};

}  // namespace

AreaAverager::AreaAverager(QSize source, PixelLayout layout, const Placement& placement)
    : image_(placement.canvas, QImage::Format_ARGB32_Premultiplied), layout_(layout), height_(source.height()) {
  if (image_.isNull()) {
    return;
  }
  image_.fill(Qt::transparent);
  columns_ = positions(source.width(), placement.picture.x(), placement.picture.width());
  rows_ = positions(source.height(), placement.picture.y(), placement.picture.height());
  sums_.assign(static_cast<std::size_t>(source.width()) * bytesAPixel(layout), 0);
  present_ = static_cast<int>(rows_.front() / kWhole);
}

void AreaAverager::addRow(const std::uint8_t* row) {
  if (next_ >= height_) {
    return;
  }
  const std::uint32_t begin = rows_[static_cast<std::size_t>(next_)];
  const std::uint32_t end = rows_[static_cast<std::size_t>(next_) + 1];
  const std::uint32_t edge = (static_cast<std::uint32_t>(present_) + 1) * kWhole;
  accumulate(row, static_cast<std::uint16_t>(std::min(end, edge) - begin));
  if (end >= edge) {
    finishRow();
    accumulate(row, static_cast<std::uint16_t>(end - edge));
  }
  if (++next_ == height_) {
    finishRow();
  }
}

void AreaAverager::accumulate(const std::uint8_t* row, std::uint16_t weight) {
  rowCoverage_ += weight;
  std::uint32_t* const sums = sums_.data();
  const std::size_t count = sums_.size();
  for (std::size_t i = 0; i < count; ++i) {
    sums[i] += static_cast<std::uint32_t>(std::uint16_t{row[i]}) * static_cast<std::uint32_t>(weight);
  }
}

void AreaAverager::finishRow() {
  if (present_ >= image_.height()) {
    return;
  }
  auto* const out = reinterpret_cast<QRgb*>(image_.scanLine(present_++));
  switch (layout_) {
    case PixelLayout::bgra:
      writeRow<PixelLayout::bgra>(out);
      break;
    case PixelLayout::rgba:
      writeRow<PixelLayout::rgba>(out);
      break;
    case PixelLayout::rgb:
      writeRow<PixelLayout::rgb>(out);
      break;
  }
  std::fill(sums_.begin(), sums_.end(), 0U);
  rowCoverage_ = 0;
}

template <PixelLayout layout>
void AreaAverager::writeRow(QRgb* out) const {
  const auto width = static_cast<std::uint32_t>(image_.width());
  PixelSum<layout> sum;
  std::uint32_t pixel = columns_.front() / kWhole;
  for (std::size_t column = 0; column + 1 < columns_.size(); ++column) {
    const std::uint32_t begin = columns_[column];
    const std::uint32_t end = columns_[column + 1];
    const std::uint32_t edge = (pixel + 1) * kWhole;
    const std::uint32_t* const sums = &sums_[column * bytesAPixel(layout)];
    sum.add(sums, std::min(end, edge) - begin);
    if (end >= edge) {
      out[pixel++] = sum.take(rowCoverage_);
      sum.add(sums, end - edge);
    }
  }
  if (pixel < width) {
    out[pixel] = sum.take(rowCoverage_);
  }
}

}  // namespace quenlio
