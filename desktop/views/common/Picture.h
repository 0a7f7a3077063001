// Making a picture fit the place where a view shows it. Pure functions on images; any thread.
#pragma once

#include <QtCore/QRect>
#include <QtCore/QSize>
#include <QtGui/QImage>

#include "core/platform/Image.h"

namespace quenlio {

// The pixels of an image that came through the platform's seam; a null image for none.
[[nodiscard]] QImage pixelsOf(const ImageRef& image);

// Where the picture is on its transparent canvas: a thumbnail is drawn in the middle of one that has another shape.
// Margins that both sides have in common are taken off; a picture without margins is its whole self.
[[nodiscard]] QRect pictureOnCanvas(const QImage& canvas);

// The largest size of this shape within these bounds, at least one pixel each way.
[[nodiscard]] QSize fitted(const QSize& shape, const QSize& bounds);

// The part of the source as a picture of exactly this size, its corners rounded. The radius is in pixels.
[[nodiscard]] QImage roundedPicture(const QImage& image, const QRect& source, const QSize& size, double radius);

// The middle of the source that has the shape of this size.
[[nodiscard]] QRect croppedTo(const QRect& source, const QSize& size);

}  // namespace quenlio
