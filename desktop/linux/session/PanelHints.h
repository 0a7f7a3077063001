// What the window manager is told of a panel's window: on all desktops, above others, in no list of windows, and not
// for the user to move. Main thread; only on X11.
#pragma once

#include "desktop/linux/session/X11.h"

namespace quenlio {

// For a window that is not shown: the window manager reads these when it is.
void announcePanel(xcb_window_t window);

// For a window that is shown. A panel that comes back right after it went may meet a window manager that is still
// tidying up after its going, and wipes what has just been announced; it reads these afterwards.
void requestPanelStates(xcb_window_t window);

}  // namespace quenlio
