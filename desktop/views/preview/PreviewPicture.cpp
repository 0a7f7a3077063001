#include "desktop/views/preview/PreviewPicture.h"

#include <QtGui/QPainter>
#include <cerrno>
#include <cmath>
#include <sys/stat.h>

#include "desktop/render/ImageDecoder.h"
#include "desktop/views/common/Checker.h"

namespace quenlio {
namespace {

using State = PreviewPicture::State;

// In the picture itself, without touching more of it than its corners.
void roundCorners(QImage& image, double radius) {
  const int side = static_cast<int>(std::ceil(radius));
  if (side < 1) {
    return;
  }
  QImage mask(2 * side, 2 * side, QImage::Format_ARGB32_Premultiplied);
  mask.fill(Qt::transparent);
  QPainter disc(&mask);
  disc.setRenderHint(QPainter::Antialiasing);
  disc.setPen(Qt::NoPen);
  disc.setBrush(Qt::black);
  disc.drawRoundedRect(QRectF(mask.rect()), radius, radius);
  disc.end();
  QPainter painter(&image);
  painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
  const QSize corner(side, side);
  const int right = image.width() - side;
  const int bottom = image.height() - side;
  painter.drawImage(QPoint(0, 0), mask, QRect(QPoint(0, 0), corner));
  painter.drawImage(QPoint(right, 0), mask, QRect(QPoint(side, 0), corner));
  painter.drawImage(QPoint(0, bottom), mask, QRect(QPoint(0, side), corner));
  painter.drawImage(QPoint(right, bottom), mask, QRect(QPoint(side, side), corner));
}

// A file that nobody may look at just now, as in a folder that is locked, may well be there.
bool isGone(const FileURL& url) {
  struct stat status {};
  return ::stat(url.path().c_str(), &status) != 0 && (errno == ENOENT || errno == ENOTDIR);
}

bool exceeds(const QSize& size, const QSize& other, int tolerance) {
  return size.width() > other.width() + tolerance || size.height() > other.height() + tolerance;
}

// Where only decoding tells the size: as large as it may be first, and a second time in the rare case that the picture
// is shown larger than it came, on a dense screen, since a page of a document then has more to show.
std::optional<DecodedImage> decodeUnmeasured(const PictureSource& source, const FileURL& url, const preview::Room& room,
                                             const std::stop_token& stop) {
  auto decoded = source.decode(url, preview::mostPixels(room), false, stop);
  if (decoded) {
    const QSize wanted = preview::shownPixels(decoded->pointSize, room);
    if (exceeds(wanted, decoded->image.size(), 1)) {
      decoded = source.decode(url, wanted, true, stop);
    } else if (exceeds(decoded->image.size(), wanted, 1)) {
      decoded->image = decoded->image.scaled(wanted, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }
  }
  return decoded;
}

}  // namespace

PictureSource PictureSource::from(const ImageDecoder& decoder) {
  return {
      .pointSize = [&decoder](const FileURL& url) { return decoder.pointSize(url); },
      .decode = [&decoder](const FileURL& url, QSize fitWithin, bool mayEnlarge,
                           const std::stop_token& stop) { return decoder.decode(url, fitWithin, mayEnlarge, stop); }};
}

std::optional<PreviewStamp> PreviewStamp::of(const FileURL& url) {
  struct stat status {};
  if (::stat(url.path().c_str(), &status) != 0) {
    return std::nullopt;
  }
  PreviewStamp stamp;
  stamp.device_ = status.st_dev;
  stamp.inode_ = status.st_ino;
  stamp.length_ = status.st_size;
  stamp.seconds_ = status.st_ctim.tv_sec;
  stamp.nanoseconds_ = status.st_ctim.tv_nsec;
  return stamp;
}

PreviewPicture loadPreviewPicture(const PictureSource& source, const FileURL& url, const preview::Room& room,
                                  const std::stop_token& stop, const std::function<void(QSizeF)>& measured) {
  const auto points = source.pointSize(url);
  if (points) {
    measured(*points);
  }
  auto decoded = points ? source.decode(url, preview::shownPixels(*points, room), true, stop)
                        : decodeUnmeasured(source, url, room, stop);
  if (!decoded) {
    return {.state = isGone(url) ? State::gone : State::unreadable, .points = {}, .image = {}};
  }
  const QSizeF size(decoded->image.size());
  const bool isClearInPlaces = hasClearPixels(decoded->image);
  roundCorners(decoded->image, preview::pictureRadius(size, preview::kPictureRadius * room.scale));
  return {.state = State::ready,
          .points = decoded->pointSize,
          .image = std::move(decoded->image),
          .isClearInPlaces = isClearInPlaces};
}

}  // namespace quenlio
