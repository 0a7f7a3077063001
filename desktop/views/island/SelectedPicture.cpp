#include "desktop/views/island/SelectedPicture.h"

#include <QtGui/QPainter>
#include <algorithm>
#include <cmath>
#include <utility>

#include "desktop/views/common/Picture.h"

namespace quenlio {
namespace {

constexpr double kThinnest = 3;  // points; what is thinner would hardly be seen
constexpr double kCheckerSquare = 6;

bool hasClearPixels(const QImage& image) {
  for (int y = 0; y < image.height(); ++y) {
    const auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
    if (std::any_of(line, line + image.width(), [](QRgb pixel) { return qAlpha(pixel) < 255; })) {
      return true;
    }
  }
  return false;
}

void putCheckerUnder(QImage& image, const PictureRoom& room) {
  const int square = std::max(1, static_cast<int>(std::lround(kCheckerSquare * room.pixelsAPoint)));
  QImage tile(2 * square, 2 * square, QImage::Format_ARGB32_Premultiplied);
  tile.fill(QColor::fromRgba(room.checkerLight));
  QPainter tiles(&tile);
  tiles.fillRect(square, 0, square, square, QColor::fromRgba(room.checkerDark));
  tiles.fillRect(0, square, square, square, QColor::fromRgba(room.checkerDark));
  tiles.end();
  QPainter painter(&image);
  painter.setCompositionMode(QPainter::CompositionMode_DestinationOver);
  painter.fillRect(image.rect(), QBrush(tile));
}

}  // namespace

SelectedPicture::SelectedPicture(Scheduler& scheduler, SharpRendition sharpRendition, std::function<void()> changed)
    : scheduler_(scheduler), sharpRendition_(std::move(sharpRendition)), changed_(std::move(changed)) {}

bool SelectedPicture::show(const ScreenshotItem* item) {
  auto next = item != nullptr ? std::optional(Shown{item->id, item->fileURL, item->thumbnail}) : std::nullopt;
  if (next == shown_) {
    return false;
  }
  const bool isAnother = !next || !shown_ || next->id != shown_->id;
  shown_ = std::move(next);
  inThumbnail_ = pictureOnCanvas(shown_ ? shown_->thumbnail : nullptr);
  isBroken_ = false;
  forgetSharp();
  askIfNeeded();
  changed_();
  return isAnother;
}

void SelectedPicture::setRoom(const PictureRoom& room) {
  if (room == room_) {
    return;
  }
  room_ = room;
  prepared_ = {};
  askIfNeeded();
}

void SelectedPicture::setIsOnScreen(bool isOnScreen) {
  isOnScreen_ = isOnScreen;
  if (!isOnScreen) {
    forgetSharp();
  }
  askIfNeeded();
}

SelectedPicture::State SelectedPicture::state() const {
  if (!shown_) {
    return State::none;
  }
  if (!inThumbnail_.isEmpty() || !sharp_.isNull()) {
    return State::ready;
  }
  return isBroken_ ? State::broken : State::loading;
}

QSize SelectedPicture::roomInPixels() const {
  return {static_cast<int>(std::floor(room_.size.width() * room_.pixelsAPoint)),
          static_cast<int>(std::floor(room_.size.height() * room_.pixelsAPoint))};
}

// As large as fits with its shape kept. What is a thousand times wider than high is shown a little higher than it is.
QSize SelectedPicture::sizeInPixels(const QSize& shape) const {
  const int thinnest = static_cast<int>(std::lround(kThinnest * room_.pixelsAPoint));
  return fitted(shape, roomInPixels()).expandedTo(QSize(thinnest, thinnest)).boundedTo(roomInPixels());
}

// As the well's where the picture has room for that, and less on a small or narrow one: corners hold things that one
// has captured.
double SelectedPicture::cornerRadius() const {
  const QSizeF size = QSizeF(prepared_.size()) / room_.pixelsAPoint;
  return std::clamp(std::min(size.width(), size.height()) * 0.07, 2.0, std::max(2.0, room_.largestRadius));
}

void SelectedPicture::forgetSharp() {
  ++request_;
  decoding_.cancel();
  sharp_ = {};
  prepared_ = {};
  askedFor_ = {};
  patience_.cancel();
}

void SelectedPicture::askIfNeeded() {
  if (!sharpRendition_ || !isOnScreen_ || !shown_ || roomInPixels().isEmpty() || roomInPixels() == askedFor_) {
    return;
  }
  if (shown_->thumbnail == nullptr) {
    if (!patience_) {
      patience_ = scheduler_.after(kPatience, weak_.bind([](SelectedPicture& self) { self.ask(); }));
    }
    return;
  }
  if (inThumbnail_.isEmpty()) {
    return;
  }
  const QSize wanted = fitted(inThumbnail_.size(), roomInPixels());
  if (wanted.width() > inThumbnail_.width() || wanted.height() > inThumbnail_.height()) {
    ask();
  }
}

void SelectedPicture::ask() {
  askedFor_ = roomInPixels();
  const std::uint64_t request = ++request_;
  decoding_ = sharpRendition_(
      shown_->url, askedFor_,
      weak_.bind([request](SelectedPicture& self, const ImageRef& image) { self.take(request, image); }));
}

void SelectedPicture::take(std::uint64_t request, const ImageRef& image) {
  if (request != request_) {
    return;
  }
  sharp_ = pixelsOf(image);
  isBroken_ = sharp_.isNull() && inThumbnail_.isEmpty();
  prepared_ = {};
  changed_();
}

const QImage& SelectedPicture::prepared() {
  if (!prepared_.isNull() || state() != State::ready) {
    return prepared_;
  }
  const QImage source = sharp_.isNull() ? pixelsOf(shown_->thumbnail) : sharp_;
  const QRect part = sharp_.isNull() ? inThumbnail_ : source.rect();
  const QSize size = sizeInPixels(part.size());
  // A rendition that is a pixel off by rounding stays as it is: scaling it once more would only blur it.
  const bool fits = std::abs(part.width() - size.width()) <= 1 && std::abs(part.height() - size.height()) <= 1;
  const QSize pixels = fits ? part.size() : size;
  prepared_ = scaledPart(source, part, pixels);
  if (hasClearPixels(prepared_)) {
    putCheckerUnder(prepared_, room_);
  }
  roundCorners(prepared_, cornerRadius() * room_.pixelsAPoint);
  return prepared_;
}

}  // namespace quenlio
