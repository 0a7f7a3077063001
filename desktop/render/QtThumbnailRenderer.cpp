#include "desktop/render/QtThumbnailRenderer.h"

#include <algorithm>
#include <cmath>

#include "desktop/render/QtImage.h"

namespace quenlio {

ImageRef QtThumbnailRenderer::render(const FileURL& url, Size canvas) {
  constexpr double sharpest = 4;
  const double scale = std::clamp(deviceScale_(), 1.0, sharpest);
  const auto pixels = [scale](double points) { return static_cast<int>(std::lround(points * scale)); };
  const QSize canvasPixels(pixels(canvas.width), pixels(canvas.height));
  auto decoded = decoder_.decodeCentred(url, canvasPixels);
  if (!decoded) {
    return nullptr;
  }
  decoded->image.setDevicePixelRatio(scale);
  return std::make_shared<QtImage>(std::move(decoded->image), canvas, centred(decoded->pointSize, canvasPixels));
}

}  // namespace quenlio
