#include "desktop/render/ImageDecoder.h"

#include "desktop/render/JpegReader.h"
#include "desktop/render/PictureFile.h"
#include "desktop/render/PngReader.h"

namespace quenlio {
namespace {

std::optional<PictureFile> openPictureFor(const FileURL& url, const Fit& fit) {
  const bool boundedBySource = fit.mode == Fit::Mode::within;
  const bool isRefused = fit.canvas.isEmpty() || (!boundedBySource && !isReasonable(fit.canvas));
  return isRefused ? std::nullopt : openPicture(url);
}

DecodedHere readHere(const PictureFile& picture, const Fit& fit, const std::stop_token& stop) {
  if (picture.kind != PictureKind::png && picture.kind != PictureKind::jpeg) {
    return {.decoded = std::nullopt, .isLeftToChild = true};
  }
  const auto read = picture.kind == PictureKind::png ? readPng : readJpeg;
  ReadResult result = read(picture.file.get(), fit, {.stop = stop});
  if (result.decoded && result.decoded->image.isNull()) {
    result.decoded.reset();
  }
  return {.decoded = std::move(result.decoded), .isLeftToChild = result.tooLargeToHold};
}

}  // namespace

std::optional<DecodedImage> ImageDecoder::decode(const FileURL& url, QSize fitWithin, bool mayEnlarge,
                                                 const std::stop_token& stop) const {
  return decode(url, Fit{fitWithin, mayEnlarge ? Fit::Mode::withinEnlarging : Fit::Mode::within}, stop);
}

std::optional<DecodedImage> ImageDecoder::decodeCentred(const FileURL& url, QSize canvas) const {
  return decode(url, Fit{canvas, Fit::Mode::centred}, {});
}

DecodedHere ImageDecoder::decodeCentredHere(const FileURL& url, QSize canvas) const {
  const Fit fit{canvas, Fit::Mode::centred};
  const auto picture = openPictureFor(url, fit);
  return picture ? readHere(*picture, fit, {}) : DecodedHere{};
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
  const auto picture = openPictureFor(url, fit);
  if (!picture) {
    return std::nullopt;
  }
  DecodedHere here = readHere(*picture, fit, stop);
  return here.isLeftToChild ? child_.decode(::fileno(picture->file.get()), picture->kind, fit, stop)
                            : std::move(here.decoded);
}

}  // namespace quenlio
