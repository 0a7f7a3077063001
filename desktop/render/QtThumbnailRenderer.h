// Makes the thumbnails of captures. Immutable but for the scale, which is asked for anew each time; any thread, and
// several at once.
#pragma once

#include <functional>

#include "core/platform/Image.h"

#include "desktop/render/ImageDecoder.h"

namespace quenlio {

class QtThumbnailRenderer final : public ThumbnailRenderer {
 public:
  // deviceScale tells how many pixels a point of the screen has, on any thread; thumbnails are made sharp for that.
  QtThumbnailRenderer(ImageDecoder decoder, std::function<double()> deviceScale)
      : decoder_(std::move(decoder)), deviceScale_(std::move(deviceScale)) {}

  // A QtImage of this size in points. The picture fills the canvas in one direction, smaller ones too, and stands in
  // the middle in the other.
  [[nodiscard]] ImageRef render(const FileURL& url, Size canvas) override;
  [[nodiscard]] std::optional<ImageRef> renderHere(const FileURL& url, Size canvas) override;

 private:
  [[nodiscard]] double scale() const;

  ImageDecoder decoder_;
  std::function<double()> deviceScale_;
};

}  // namespace quenlio
