// Pictures as files hold them: the bytes in memory, decoded when somebody asks for pixels. Any thread.
#pragma once

#include <QByteArray>
#include <utility>

#include "core/platform/Pasteboard.h"

#include "desktop/linux/system/PictureKind.h"
#include "desktop/render/ImageDecoder.h"

namespace quenlio {

// What a file held when it was read. Immutable; any thread.
class FileImage final : public Image {
 public:
  FileImage(QByteArray bytes, PictureKind kind, Size points, ImageDecoder decoder)
      : bytes_(std::move(bytes)), kind_(kind), points_(points), decoder_(std::move(decoder)) {}

  // Nothing by nothing for the kinds whose size only decoding tells: all but PNG and JPEG.
  [[nodiscard]] Size size() const override { return points_; }
  [[nodiscard]] const QByteArray& bytes() const { return bytes_; }
  [[nodiscard]] PictureKind kind() const { return kind_; }
  // All its pixels; nothing when it is damaged. Takes as long as decoding does.
  [[nodiscard]] std::optional<DecodedImage> decode() const;
  // Whether decode() would give them. Takes as long, and next to no memory with most.
  [[nodiscard]] bool isSound() const;

 private:
  [[nodiscard]] std::optional<DecodedImage> decode(QSize fitWithin) const;

  const QByteArray bytes_;
  const PictureKind kind_;
  const Size points_;
  const ImageDecoder decoder_;
};

class FileImages final : public Images {
 public:
  explicit FileImages(ImageDecoder decoder) : decoder_(std::move(decoder)) {}

  // A FileImage. What begins like no picture, or is too large for anything that is shown, is none. Whether the rest of
  // it is sound shows when it is decoded.
  [[nodiscard]] ImageRef imageWithContentsOfFile(const FileURL& url) const override;

 private:
  ImageDecoder decoder_;
};

// The picture as a PNG file: a PNG's own bytes, at once when it has its end, and all else decoded and encoded, which
// takes its time. Empty when that cannot be done. Any thread.
[[nodiscard]] QByteArray pngBytes(const Image& image);

// Whether the bytes that were given like that can be decoded, which a PNG's own may not. Takes as long as decoding one
// does. Any thread.
[[nodiscard]] bool isSoundAsPNG(const Image& image);

}  // namespace quenlio
