// Where a picture goes when it is made smaller or larger. Values only; any thread.
#pragma once

#include <QRectF>
#include <QSize>
#include <QSizeF>

namespace quenlio {

// What is wanted of a picture. All sizes are in pixels.
struct Fit {
  enum class Mode {
    within,           // as large as it fits, its shape kept, never larger than it is
    withinEnlarging,  // as large as it fits, its shape kept, made larger too
    centred,          // a canvas of exactly this size, the picture as large as it fits in its middle, made larger too
  };
  QSize canvas;
  Mode mode = Mode::within;
};

// The canvas to be made, and the rectangle in it that the picture covers. The rectangle may begin and end between two
// pixels: those are covered in part, which is what centring to the fraction of a pixel means.
struct Placement {
  QSize canvas;
  QRectF picture;
};

// The source has at least one pixel.
[[nodiscard]] Placement placed(QSize source, const Fit& fit);

// Where a picture of this shape stands, in pixels, when it is as large as it fits in the middle of the canvas.
[[nodiscard]] QRectF centred(const QSizeF& shape, QSize canvas);

// The largest picture that is opened: what claims more is no screenshot but a bomb, and is refused by its header alone.
inline constexpr int kLongestSide = 32'768;
inline constexpr double kMostPixels = 200e6;

// Whether a picture of this size is opened at all. Also false for an empty one.
[[nodiscard]] constexpr bool isReasonable(double width, double height) {
  return width >= 1 && height >= 1 && width <= kLongestSide && height <= kLongestSide && width * height <= kMostPixels;
}
[[nodiscard]] constexpr bool isReasonable(QSize size) {
  return isReasonable(size.width(), size.height());
}

// Two or three pixels to a point for a density of 144 or 216 dots an inch, else one.
[[nodiscard]] int pixelsAPoint(double dotsAnInch);

// The same for a density in dots a metre, which rounds.
[[nodiscard]] int pixelsAPointOfMetre(double dotsAMetre);

[[nodiscard]] inline QSizeF inPoints(QSize pixels, int pixelsAPoint) {
  return QSizeF(pixels) / pixelsAPoint;
}

}  // namespace quenlio
