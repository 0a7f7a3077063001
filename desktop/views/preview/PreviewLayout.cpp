#include "desktop/views/preview/PreviewLayout.h"

#include <algorithm>
#include <cmath>

namespace quenlio::preview {
namespace {

constexpr QSize kAroundPicture{2 * kInset, kCaptionHeight + kInset};
constexpr double kBesideOther = 12;  // between the window and one beside it

QSizeF largestWindow(const Room& room) {
  return {std::floor(room.workArea.width() * kShareOfWorkArea), std::floor(room.workArea.height() * kShareOfWorkArea)};
}

QSizeF largestPicture(const Room& room) {
  return (largestWindow(room) - QSizeF(kAroundPicture)).expandedTo(QSizeF(1, 1));
}

QSize bounded(const QSize& window, const Room& room) {
  return window.boundedTo(largestWindow(room).toSize()).expandedTo(QSize(1, 1));
}

// Of one axis: where the window begins.
double origin(double centre, double length, double low, double high) {
  const double wanted = std::round(centre - length / 2);
  return std::max(low, std::min(wanted, std::floor(high - length)));
}

}  // namespace

QSizeF shownSize(const QSizeF& picture, const Room& room) {
  const QSizeF most = largestPicture(room);
  if (picture.width() <= most.width() && picture.height() <= most.height()) {
    return picture;
  }
  return picture.scaled(most, Qt::KeepAspectRatio);
}

QSize shownPixels(const QSizeF& picture, const Room& room) {
  return (shownSize(picture, room) * room.scale).toSize().expandedTo(QSize(1, 1));
}

QSize mostPixels(const Room& room) {
  return (largestPicture(room) * room.scale).toSize().expandedTo(QSize(1, 1));
}

QSize windowSize(const QSizeF& shown, const Room& room) {
  const QSize whole(static_cast<int>(std::ceil(shown.width())), static_cast<int>(std::ceil(shown.height())));
  return bounded((whole + kAroundPicture).expandedTo(kSmallestWindow), room);
}

QSize windowSizeWithoutPicture(const Room& room) {
  return bounded(kWindowWithoutPicture, room);
}

QRectF pictureArea(const QSizeF& window) {
  return QRectF(QPointF(), window).adjusted(kInset, kCaptionHeight, -kInset, -kInset);
}

double pictureRadius(const QSizeF& size, double most) {
  const double radius = std::min(most, std::min(size.width(), size.height()) * 0.04);
  return radius < 1 ? 0 : radius;
}

Rect<Screen> frameAround(Point<Screen> centre, const QSize& window, const Rect<Screen>& workArea) {
  const Size size{static_cast<double>(window.width()), static_cast<double>(window.height())};
  return {{origin(centre.x, size.width, workArea.minX(), workArea.maxX()),
           origin(centre.y, size.height, workArea.minY(), workArea.maxY())},
          size};
}

Rect<Screen> frameBeside(const Rect<Screen>& other, const Rect<Screen>& frame, const Rect<Screen>& workArea) {
  const bool isUnder = frame.minX() < other.maxX() && other.minX() < frame.maxX() && frame.minY() < other.maxY() &&
                       other.minY() < frame.maxY();
  if (!isUnder) {
    return frame;
  }
  const bool goesLeft = frame.minX() + frame.maxX() <= other.minX() + other.maxX();
  const double wanted = goesLeft ? frame.maxX() - other.minX() : other.maxX() - frame.minX();
  const double room = goesLeft ? frame.minX() - workArea.minX() : workArea.maxX() - frame.maxX();
  const double by = std::floor(std::clamp(wanted + kBesideOther, 0.0, std::max(room, 0.0)));
  return frame.moved(goesLeft ? -by : by, 0);
}

}  // namespace quenlio::preview
