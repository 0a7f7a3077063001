// How like two pictures of the island are. Letters are drawn a little differently by each version of the font library,
// so that two pictures may be the same to who looks at them and not be equal.
#pragma once

#include <QtCore/QPoint>
#include <QtGui/QImage>
#include <ostream>

namespace quenlio {

struct Likeness {
  double differentPixels = 0;  // the share of pixels that differ by more than anybody overlooks
  double meanDifference = 0;   // of 255, over all channels of all pixels
  // A small thing that is wrong is nothing in all of the picture. In the square of 16 points where most is different:
  double worstTile = 0;  // the mean over its pixels of the channel that differs most, of 255
  QPoint worstTileAt{};

  [[nodiscard]] bool isSame() const;
};

// Two of one size, at one pixel a point.
[[nodiscard]] Likeness likenessOf(const QImage& seen, const QImage& wanted);

std::ostream& operator<<(std::ostream& out, const Likeness& likeness);

}  // namespace quenlio
