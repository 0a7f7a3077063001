// Other programs' windows on the X server: what the panel must know of them in order to stand where it is seen. All
// rectangles are in device pixels with y growing downward. Main thread; off X11 there are no other windows.
#pragma once

#include <QtCore/QRect>
#include <cstdint>
#include <vector>

#include "desktop/linux/session/WorkArea.h"
#include "desktop/linux/session/X11.h"

QT_BEGIN_NAMESPACE
class QScreen;
QT_END_NAMESPACE

namespace quenlio::x11 {

// The numbers or atoms of a window's property; none for a window that is gone.
[[nodiscard]] std::vector<std::uint32_t> numbers(xcb_window_t window, const char* property);

// Whether a window that fills the screen and is not hidden covers all of this rectangle.
[[nodiscard]] bool isCoveredByFullScreenWindow(const QRect& rect);

// Whether the user looks at the desktop itself, with all windows put out of the way.
[[nodiscard]] bool isShowingDesktop();

// The desktop's edges that bars keep for themselves, on all screens.
[[nodiscard]] std::vector<Strut> struts();
// Of all screens together.
[[nodiscard]] QSize desktopSize();

// Who has the keyboard: a window, or one of the server's two values for nobody in particular.
[[nodiscard]] xcb_window_t keyboardsOwner();
// Past the window manager. One that is gone or not shown is passed over: the keyboard goes where the pointer is.
void giveKeyboard(xcb_window_t window);

// Between points, as Qt counts them, and device pixels of this screen. A rectangle of points loses no pixel on the way
// to pixels; on the way back it loses the points that it has only a part of.
[[nodiscard]] QRect toPixels(const QRect& points, const QScreen& screen);
[[nodiscard]] QRect toPoints(const QRect& pixels, const QScreen& screen);

}  // namespace quenlio::x11
