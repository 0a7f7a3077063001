// Where things are in the preview window, and how large it is around a picture. Pure; any thread. Lengths are in
// points, y growing downward, unless told otherwise.
#pragma once

#include <QtCore/QRectF>
#include <QtCore/QSize>
#include <QtCore/QSizeF>

#include "core/geometry/Geometry.h"

namespace quenlio::preview {

inline constexpr double kShareOfWorkArea = 0.85;  // at most, of the window each way
inline constexpr double kCornerRadius = 14;
inline constexpr double kPictureRadius = 6;  // at most
inline constexpr int kCaptionHeight = 40;    // the row at the top
inline constexpr int kInset = 8;             // beside and below the picture
inline constexpr QSize kSmallestWindow{340, 220};
// As long as nothing is known of the picture, or there is none to show.
inline constexpr QSize kWindowWithoutPicture{480, 320};

// Where the window is shown: a screen without its bars, and how many device pixels a point has there.
struct Room {
  QSizeF workArea;
  double scale = 1;
  bool operator==(const Room&) const = default;
};

// The picture as it is shown: its shape kept, at most as large as its own points and as the room allows.
[[nodiscard]] QSizeF shownSize(const QSizeF& picture, const Room& room);
// The same in device pixels, at least one each way.
[[nodiscard]] QSize shownPixels(const QSizeF& picture, const Room& room);
// The most device pixels that any picture is shown in.
[[nodiscard]] QSize mostPixels(const Room& room);

// The window around a picture of this size as it is shown, or around none.
[[nodiscard]] QSize windowSize(const QSizeF& shown, const Room& room);
[[nodiscard]] QSize windowSizeWithoutPicture(const Room& room);

// What the window has for the picture, which stands in the middle of it.
[[nodiscard]] QRectF pictureArea(const QSizeF& window);

// How far a picture's corners are rounded: less on a small or narrow one, since corners hold things that one has
// captured, and not at all where it would be by less than one. In the unit of the size.
[[nodiscard]] double pictureRadius(const QSizeF& size, double most);

// The window of this size around the point, moved as far as it takes to be wholly in the work area; whole points. The
// screen's coordinates, y growing upward.
[[nodiscard]] Rect<Screen> frameAround(Point<Screen> centre, const QSize& window, const Rect<Screen>& workArea);
// The frame moved sideways from under the other window, which stands above it, as far as the work area goes.
[[nodiscard]] Rect<Screen> frameBeside(const Rect<Screen>& other, const Rect<Screen>& frame,
                                       const Rect<Screen>& workArea);

}  // namespace quenlio::preview
