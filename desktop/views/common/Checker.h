// What shows through a picture where that is clear. Main thread, but for hasClearPixels().
#pragma once

#include <QtGui/QBrush>
#include <QtGui/QColor>
#include <QtGui/QImage>

namespace quenlio {

// Two tones near to each other, so that the picture stands out before them.
struct Checker {
  QRgb light = 0;
  QRgb dark = 0;

  [[nodiscard]] static Checker forAppearance(bool isDark);
  // With one pixel of the brush a device pixel.
  [[nodiscard]] QBrush brush(double pixelsAPoint) const;
  bool operator==(const Checker&) const = default;
};

// Of an image whose pixels are ARGB32_Premultiplied. Any thread.
[[nodiscard]] bool hasClearPixels(const QImage& image);

}  // namespace quenlio
