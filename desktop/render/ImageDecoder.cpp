#include "desktop/render/ImageDecoder.h"

#include "desktop/render/JpegReader.h"
#include "desktop/render/PictureFile.h"
#include "desktop/render/PngReader.h"

namespace quenlio {

std::optional<DecodedImage> ImageDecoder::decode(const FileURL& url, QSize fitWithin, bool mayEnlarge,
                                                 const std::stop_token& stop) const {
  return decode(url, Fit{fitWithin, mayEnlarge ? Fit::Mode::withinEnlarging : Fit::Mode::within}, stop);
}

std::optional<DecodedImage> ImageDecoder::decodeCentred(const FileURL& url, QSize canvas) const {
  return decode(url, Fit{canvas, Fit::Mode::centred}, {});
}

std::optional<QSizeF> ImageDecoder::pointSize(const FileURL& url) const {
  const auto picture = openPicture(url);
  if (picture && picture->kind == PictureKind::png) {
    return pngPointSize(picture->file.get());
  }
  if (picture && picture->kind == PictureKind::jpeg) {
    return jpegPointSize(picture->file.get());
  }
  return std::nullopt;
}

std::optional<DecodedImage> ImageDecoder::decode(const FileURL& url, const Fit& fit,
                                                 const std::stop_token& stop) const {
  const bool boundedBySource = fit.mode == Fit::Mode::within;
  if (fit.canvas.isEmpty() || (!boundedBySource && !isReasonable(fit.canvas))) {
    return std::nullopt;
  }
  const auto picture = openPicture(url);
  if (!picture) {
    return std::nullopt;
  }
  std::FILE* const file = picture->file.get();
  const ReadLimits limits{.stop = stop};
  ReadResult result;
  if (picture->kind == PictureKind::png) {
    result = readPng(file, fit, limits);
  } else if (picture->kind == PictureKind::jpeg) {
    result = readJpeg(file, fit, limits);
  }
  const bool isReadHere = picture->kind == PictureKind::png || picture->kind == PictureKind::jpeg;
  if (!isReadHere || result.tooLargeToHold) {
    result.decoded = child_.decode(::fileno(file), picture->kind, fit, stop);
  }
  return result.decoded && !result.decoded->image.isNull() ? result.decoded : std::nullopt;
}

}  // namespace quenlio
