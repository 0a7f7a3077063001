#include "tests/desktop/views/Likeness.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace quenlio {
namespace {

constexpr int kChannelTolerance = 40;  // of 255, of a pixel that counts as the same
constexpr double kDifferentPixels = 0.004;
constexpr double kMeanDifference = 0.6;
constexpr double kTileDifference = 5;

constexpr int kTile = 16;
constexpr int kTileStep = kTile / 2;  // tiles overlap: what lies on the edge of one lies in the middle of another

// The sums of squares of kTileStep, of which each tile has four.
class Tiles {
 public:
  explicit Tiles(const QSize& size)
      : columns_(size.width() / kTileStep + 1),
        sums_(static_cast<std::size_t>(columns_ * (size.height() / kTileStep + 1))) {}
  void add(int x, int y, int difference) { at(x / kTileStep, y / kTileStep) += difference; }
  void findWorst(Likeness& likeness) {
    const int rows = static_cast<int>(sums_.size()) / columns_;
    for (int row = 0; row + 1 < rows; ++row) {
      for (int column = 0; column + 1 < columns_; ++column) {
        const int sum = at(column, row) + at(column + 1, row) + at(column, row + 1) + at(column + 1, row + 1);
        const double mean = static_cast<double>(sum) / (kTile * kTile);
        if (mean > likeness.worstTile) {
          likeness.worstTile = mean;
          likeness.worstTileAt = {column * kTileStep, row * kTileStep};
        }
      }
    }
  }

 private:
  int& at(int column, int row) { return sums_.at(static_cast<std::size_t>(row * columns_ + column)); }

  int columns_;
  std::vector<int> sums_;
};

}  // namespace

bool Likeness::isSame() const {
  return differentPixels <= kDifferentPixels && meanDifference <= kMeanDifference && worstTile <= kTileDifference;
}

Likeness likenessOf(const QImage& seen, const QImage& wanted) {
  const QImage a = seen.convertToFormat(QImage::Format_ARGB32);
  const QImage b = wanted.convertToFormat(QImage::Format_ARGB32);
  Tiles tiles(a.size());
  std::size_t different = 0;
  double sum = 0;
  for (int y = 0; y < a.height(); ++y) {
    const auto* rowOfA = reinterpret_cast<const QRgb*>(a.constScanLine(y));
    const auto* rowOfB = reinterpret_cast<const QRgb*>(b.constScanLine(y));
    for (int x = 0; x < a.width(); ++x) {
      const QRgb one = rowOfA[x];
      const QRgb other = rowOfB[x];
      if (one == other) {
        continue;
      }
      const int channels[] = {std::abs(qRed(one) - qRed(other)), std::abs(qGreen(one) - qGreen(other)),
                              std::abs(qBlue(one) - qBlue(other)), std::abs(qAlpha(one) - qAlpha(other))};
      const int most = *std::ranges::max_element(channels);
      different += most > kChannelTolerance ? 1U : 0U;
      sum += channels[0] + channels[1] + channels[2] + channels[3];
      tiles.add(x, y, most);
    }
  }
  const double pixels = static_cast<double>(a.width()) * a.height();
  Likeness likeness{.differentPixels = static_cast<double>(different) / pixels, .meanDifference = sum / pixels / 4};
  tiles.findWorst(likeness);
  return likeness;
}

std::ostream& operator<<(std::ostream& out, const Likeness& likeness) {
  return out << likeness.differentPixels << " of the pixels differ, by " << likeness.meanDifference
             << " on average; most in the tile at " << likeness.worstTileAt.x() << ", " << likeness.worstTileAt.y()
             << ": by " << likeness.worstTile;
}

}  // namespace quenlio
