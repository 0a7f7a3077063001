#include "desktop/render/ImageDecoder.h"

#include "desktop/render/JpegReader.h"
#include "desktop/render/PictureFile.h"
#include "desktop/render/PngReader.h"

namespace quenlio {

std::optional<DecodedImage> ImageDecoder::decode(const FileURL& url, QSize fitWithin, bool mayEnlarge) const {
  return decode(url, Fit{fitWithin, mayEnlarge ? Fit::Mode::withinEnlarging : Fit::Mode::within});
}

std::optional<DecodedImage> ImageDecoder::decodeCentred(const FileURL& url, QSize canvas) const {
  return decode(url, Fit{canvas, Fit::Mode::centred});
}

std::optional<DecodedImage> ImageDecoder::decode(const FileURL& url, const Fit& fit) const {
  const bool boundedBySource = fit.mode == Fit::Mode::within;
  if (fit.canvas.isEmpty() || (!boundedBySource && !isReasonable(fit.canvas))) {
    return std::nullopt;
  }
  const auto picture = openPicture(url);
  if (!picture) {
    return std::nullopt;
  }
  std::FILE* const file = picture->file.get();
  ReadResult result;
  if (picture->kind == PictureKind::png) {
    result = readPng(file, fit, {});
  } else if (picture->kind == PictureKind::jpeg) {
    result = readJpeg(file, fit, {});
  }
  const bool isReadHere = picture->kind == PictureKind::png || picture->kind == PictureKind::jpeg;
  if (!isReadHere || result.tooLargeToHold) {
    result.decoded = child_.decode(::fileno(file), picture->kind, fit);
  }
  return result.decoded && !result.decoded->image.isNull() ? result.decoded : std::nullopt;
}

}  // namespace quenlio
