// What the window manager is told of a panel's window: on all desktops, above others or not, in no list of windows, and
// not for the user to move; how much of it is only its shadow, and where what is behind it is to be blurred. Main
// thread; only on X11.
#pragma once

#include <QtCore/QMargins>
#include <QtGui/QRegion>

#include "desktop/linux/session/X11.h"

namespace quenlio {

// Above all other windows, or where the last use of each leaves it, and then below every panel that is above others.
enum class PanelLayer { aboveOthers, amongOthers };

// For a window that is not shown: the window manager reads these when it is.
void announcePanel(xcb_window_t window, PanelLayer layer = PanelLayer::aboveOthers);

// For a window that is shown. A panel that comes back right after it went may meet a window manager that is still
// tidying up after its going, and wipes what has just been announced; it reads these afterwards.
void requestPanelStates(xcb_window_t window, PanelLayer layer = PanelLayer::aboveOthers);

// How far the window reaches beyond what the user takes for it, in pixels; not at all is announced as nothing.
void announceShadow(xcb_window_t window, const QMargins& extents);

// The part of the window, in pixels from its top left, behind which a compositor that can is to blur; empty: nowhere.
void announceBlurBehind(xcb_window_t window, const QRegion& region);

// Whether there is such a compositor, as it says on the root window; and the name of the property by which it does.
inline constexpr const char* kBlurBehind = "_KDE_NET_WM_BLUR_BEHIND_REGION";
[[nodiscard]] bool canBlurBehind();

}  // namespace quenlio
