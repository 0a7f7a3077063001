// The keyboard as a panel's window takes it and gives it back: whose it was before, and whether it has been used since.
// Owned by its PanelWindow. Main thread.
//
// A window that is shown past the window manager has to take the keyboard, and to give it back, by itself. For all
// others the window manager does both, with one exception that it cannot know of: the keyboard that came because the
// pointer did, and that nobody has used when the pointer goes.
#pragma once

#include <QtCore/QEvent>
#include <QtWidgets/QWidget>

#include "desktop/linux/session/X11.h"

namespace quenlio {

class PanelKeyboard {
 public:
  // Why it is taken: the pointer has come, or the user has asked for the panel.
  enum class Reason { pointer, user };

  explicit PanelKeyboard(QWidget& window) : window_(window) {}

  void take(Reason reason, bool bypassesWindowManager);
  // To whom it was taken from.
  void giveBack();
  // The same, for a keyboard that came with the pointer and has not been used; one that is still on its way goes back
  // as soon as it comes.
  void returnUnused();
  // What the window hears, before any of its views does.
  void heard(QEvent::Type type);
  // The server has told the window that it has the keyboard. The toolkit tells so as soon as it has asked for it.
  void keyboardCame();

 private:
  [[nodiscard]] xcb_window_t id() const { return static_cast<xcb_window_t>(window_.winId()); }

  QWidget& window_;
  xcb_window_t ownerBefore_ = XCB_NONE;  // while it is the window's, or on its way there
  bool isUsed_ = false;
  bool isUnwanted_ = false;
};

}  // namespace quenlio
