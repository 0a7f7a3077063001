#include "desktop/views/island/SelectedPicture.h"

#include <QtGui/QPainter>
#include <algorithm>
#include <cmath>
#include <utility>

#include "desktop/views/common/Picture.h"

namespace quenlio {
namespace {

constexpr double kThinnest = 3;  // points; what is thinner would hardly be seen
constexpr double kMostEnlarged = 2;

void putCheckerUnder(QImage& image, const PictureRoom& room) {
  QPainter painter(&image);
  painter.setCompositionMode(QPainter::CompositionMode_DestinationOver);
  painter.fillRect(image.rect(), room.checker.brush(room.pixelsAPoint));
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
  if (!isAnother && next->thumbnail == shown_->thumbnail) {
    rename(next->url);
    return false;
  }
  shown_ = std::move(next);
  const ImageRef thumbnail = shown_ ? shown_->thumbnail : nullptr;
  inThumbnail_ = pictureOnCanvas(thumbnail);
  ownSize_ = ownSizeOf(thumbnail);
  isBroken_ = false;
  forgetSharp();
  askIfNeeded();
  changed_();
  return isAnother;
}

// The picture is the same. What was asked of the old name may not have been found there any more.
void SelectedPicture::rename(const FileURL& url) {
  shown_->url = url;
  if (!askedFor_.isEmpty() && sharp_.isNull()) {
    ask();
  }
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
  const QSize most = (ownSize_ * kMostEnlarged * room_.pixelsAPoint).toSize().boundedTo(roomInPixels());
  return fitted(shape, most).expandedTo(QSize(thinnest, thinnest)).boundedTo(roomInPixels());
}

// As the well's where the picture has room for that, and less on a small or narrow one: corners hold things that one
// has captured.
double SelectedPicture::cornerRadius() const {
  const QSizeF size = QSizeF(prepared_.size()) / room_.pixelsAPoint;
  const double shorter = std::min(size.width(), size.height());
  return std::clamp(shorter * 0.07, std::min(2.0, shorter / 4), std::max(2.0, room_.largestRadius));
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
  const QSize wanted = sizeInPixels(inThumbnail_.size());
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
  if (!sharp_.isNull()) {
    ownSize_ = ownSizeOf(image);
  }
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
