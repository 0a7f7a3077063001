// One file as the preview window shows it: decoded at exactly the device pixels that it is shown in, never larger.
//
// There is no coarse rendition first: nearly every capture is a PNG, whose every row has to be unpacked for the
// smallest rendition too, so that it would come no sooner. What a glance at the header tells comes first instead: the
// size.
#pragma once

#include <QtGui/QImage>
#include <cstdint>
#include <functional>
#include <optional>
#include <stop_token>

#include "core/base/FileURL.h"

#include "desktop/render/DecodedImage.h"
#include "desktop/views/preview/PreviewLayout.h"

namespace quenlio {

class ImageDecoder;

struct PreviewPicture {
  enum class State { loading, ready, gone, unreadable };
  State state = State::loading;
  std::optional<QSizeF> points;  // the picture's own size, as soon as it is known
  QImage image;                  // when ready: as many device pixels as it is shown in, its corners rounded
  bool isClearInPlaces = false;  // by its own pixels
};

// Opens pictures. Any thread, several at once.
struct PictureSource {
  // The decoder outlives all that is done with this.
  [[nodiscard]] static PictureSource from(const ImageDecoder& decoder);

  // A picture's size in points, where that is quickly told.
  std::function<std::optional<QSizeF>(const FileURL&)> pointSize;
  std::function<std::optional<DecodedImage>(const FileURL&, QSize fitWithin, bool mayEnlarge, const std::stop_token&)>
      decode;
};

// Tells a file from another one, or from itself after it has been written to.
class PreviewStamp {
 public:
  // Nothing when there is no such file, or none that may be looked at.
  [[nodiscard]] static std::optional<PreviewStamp> of(const FileURL& url);
  bool operator==(const PreviewStamp&) const = default;

 private:
  std::uint64_t device_ = 0;
  std::uint64_t inode_ = 0;
  std::int64_t length_ = 0;
  std::int64_t seconds_ = 0;  // of the last change
  std::int64_t nanoseconds_ = 0;
};

// The file's picture for this room; takes as long as decoding takes, and is none of it when the stop comes first.
// measured is told the size, on this thread, where that is known before the pixels are. Any thread.
[[nodiscard]] PreviewPicture loadPreviewPicture(const PictureSource& source, const FileURL& url,
                                                const preview::Room& room, const std::stop_token& stop,
                                                const std::function<void(QSizeF)>& measured);

}  // namespace quenlio
