#include "desktop/render/QtThumbnailRenderer.h"

#include <algorithm>
#include <cmath>

#include "desktop/render/QtImage.h"

namespace quenlio {

namespace {

QSize inPixels(Size canvas, double scale) {
  return {static_cast<int>(std::lround(canvas.width * scale)), static_cast<int>(std::lround(canvas.height * scale))};
}

ImageRef onCanvas(std::optional<DecodedImage> decoded, Size canvas, double scale) {
  if (!decoded) {
    return nullptr;
  }
  decoded->image.setDevicePixelRatio(scale);
  const QSizeF& own = decoded->pointSize;
  return std::make_shared<QtImage>(std::move(decoded->image), canvas, centred(own, inPixels(canvas, scale)),
                                   Size{own.width(), own.height()});
}

}  // namespace

double QtThumbnailRenderer::scale() const {
  constexpr double sharpest = 4;
  return std::clamp(deviceScale_(), 1.0, sharpest);
}

ImageRef QtThumbnailRenderer::render(const FileURL& url, Size canvas) {
  const double scale = this->scale();
  return onCanvas(decoder_.decodeCentred(url, inPixels(canvas, scale)), canvas, scale);
}

std::optional<ImageRef> QtThumbnailRenderer::renderHere(const FileURL& url, Size canvas) {
  const double scale = this->scale();
  DecodedHere here = decoder_.decodeCentredHere(url, inPixels(canvas, scale));
  return here.isLeftToChild ? std::nullopt : std::optional(onCanvas(std::move(here.decoded), canvas, scale));
}

}  // namespace quenlio
