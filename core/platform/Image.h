// A picture in memory, opaque to core/, and the maker of thumbnails.
#pragma once

#include <memory>
#include <optional>

#include "core/base/FileURL.h"
#include "core/geometry/Geometry.h"

namespace quenlio {

// Immutable. May be let go of on any thread.
class Image {
 public:
  virtual ~Image() = default;
  [[nodiscard]] virtual Size size() const = 0;  // points
};

using ImageRef = std::shared_ptr<const Image>;

class ThumbnailRenderer {
 public:
  virtual ~ThumbnailRenderer() = default;
  // A canvas of this size in points, transparent, with the file's picture in drawn. Nothing when the file cannot be
  // read as a picture, or claims a size that no screenshot has. Any thread; takes as long as decoding takes, which is
  // many seconds with a few files.
  [[nodiscard]] virtual ImageRef render(const FileURL& url, Size canvas) = 0;
  // What render() gives, where this program decodes the file itself, as it does with nearly every capture: that never
  // takes long. No answer at all for a file that only another process decodes. Any thread.
  [[nodiscard]] virtual std::optional<ImageRef> renderHere(const FileURL& url, Size canvas) = 0;
};

}  // namespace quenlio
