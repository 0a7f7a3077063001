// Which display the program shows itself on. Before the application object; main thread.
#pragma once

namespace quenlio {

// Sets $QT_QPA_PLATFORM to X11 (or XWayland, which is the desktop that this shell speaks to) when it says nothing, or
// Wayland and an X display can be reached as well. Any other choice of the user's stays. False when what is then chosen
// is an X display that cannot be reached.
[[nodiscard]] bool chooseDisplay();

}  // namespace quenlio
