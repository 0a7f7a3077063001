// Opens the pictures that the library shows: png, jpg, heic, tiff and the first page of a pdf.
//
// PNG and JPEG, which nearly every capture is, are decoded here in a size that fits the use: row by row, unless they
// are interlaced, progressive or not made smaller, which takes the whole picture. Interlaced and progressive ones of
// more than 16 megapixels go through a child process, and so does all else. Colours come as sRGB, turned pictures
// upright. A header that claims more than 200 megapixels, or a side over 32,768, is refused before there is any memory
// for pixels.
//
// Immutable; any thread, and several at once.
#pragma once

#include <optional>
#include <stop_token>

#include "core/base/FileURL.h"

#include "desktop/render/ChildDecoder.h"
#include "desktop/render/DecodedImage.h"
#include "desktop/render/Placement.h"

namespace quenlio {

class ImageDecoder {
 public:
  explicit ImageDecoder(ChildDecoder child) : child_(std::move(child)) {}

  // The picture with its shape kept, at most this many pixels wide and high (and at least one): never larger than it is
  // in the file unless it may be enlarged. Nothing when it cannot be opened, is damaged or refused, nor, soon, once the
  // stop is asked for.
  [[nodiscard]] std::optional<DecodedImage> decode(const FileURL& url, QSize fitWithin, bool mayEnlarge,
                                                   const std::stop_token& stop = {}) const;

  // The size in points that decoding will tell, where a glance at the header does: that of a PNG or JPEG. Nothing for
  // other kinds, or when the header is damaged or refused.
  [[nodiscard]] std::optional<QSizeF> pointSize(const FileURL& url) const;

  // The picture as large as it fits in the middle of a transparent canvas of exactly this many pixels.
  [[nodiscard]] std::optional<DecodedImage> decodeCentred(const FileURL& url, QSize canvas) const;
  // The same, without ever waiting for a child process.
  [[nodiscard]] DecodedHere decodeCentredHere(const FileURL& url, QSize canvas) const;

  // For the end of the program: what is being decoded in a child process has no answer, at once. Copies share this.
  void stop() const { child_.stop(); }

 private:
  [[nodiscard]] std::optional<DecodedImage> decode(const FileURL& url, const Fit& fit,
                                                   const std::stop_token& stop) const;

  ChildDecoder child_;
};

}  // namespace quenlio
