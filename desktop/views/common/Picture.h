// Making a picture fit the place where a view shows it. Pure functions on images; any thread.
#pragma once

#include <QtCore/QRect>
#include <QtCore/QSize>
#include <QtGui/QImage>

#include "core/platform/Image.h"

namespace quenlio {

// The pixels of an image that came through the platform's seam; a null image for none.
[[nodiscard]] QImage pixelsOf(const ImageRef& image);

// Where the picture is on its transparent canvas, in whole pixels: a thumbnail is drawn in the middle of one that has
// another shape. Pixels that the picture covers in part belong to it. Empty for no image.
[[nodiscard]] QRect pictureOnCanvas(const ImageRef& image);

// How large the picture is in its file, in points. Empty for no image.
[[nodiscard]] QSizeF ownSizeOf(const ImageRef& image);

// The largest size of this shape within these bounds, at least one pixel each way.
[[nodiscard]] QSize fitted(const QSize& shape, const QSize& bounds);

// The part of the source as a picture of exactly this size. All lengths are in pixels, and one pixel of the result is
// one point of it, whatever the image says of its density.
[[nodiscard]] QImage scaledPart(const QImage& image, const QRect& source, const QSize& size);

// Takes the corners of such a picture away.
void roundCorners(QImage& picture, double radius);

// Both in one.
[[nodiscard]] QImage roundedPicture(const QImage& image, const QRect& source, const QSize& size, double radius);

// The middle of the source that has the shape of this size.
[[nodiscard]] QRect croppedTo(const QRect& source, const QSize& size);

}  // namespace quenlio
