#include "desktop/linux/session/PanelKeyboard.h"

#include <utility>

#include "desktop/linux/session/X11Windows.h"

namespace quenlio {

void PanelKeyboard::take(Reason reason, bool bypassesWindowManager) {
  const xcb_window_t owner = x11::keyboardsOwner();
  if (owner != id()) {
    isUsed_ = isUsed_ && ownerBefore_ != XCB_NONE;
    ownerBefore_ = owner;
  }
  isUsed_ = isUsed_ || reason == Reason::user;
  isUnwanted_ = false;
  if (!bypassesWindowManager) {
    // Also when the window is said to be active: right after a hiding that is still the answer of before.
    window_.activateWindow();
  } else if (owner != id()) {
    x11::giveKeyboard(id());
  }
}

void PanelKeyboard::giveBack() {
  const xcb_window_t owner = std::exchange(ownerBefore_, static_cast<xcb_window_t>(XCB_NONE));
  if (owner != XCB_NONE && x11::keyboardsOwner() == id()) {
    x11::giveKeyboard(owner);
  }
}

void PanelKeyboard::returnUnused() {
  if (isUsed_ || ownerBefore_ == XCB_NONE) {
    return;
  }
  if (x11::keyboardsOwner() == id()) {
    giveBack();
  } else {
    isUnwanted_ = true;
  }
}

void PanelKeyboard::keyboardCame() {
  if (isUnwanted_ && x11::keyboardsOwner() == id()) {
    isUnwanted_ = false;
    giveBack();
  }
}

void PanelKeyboard::heard(QEvent::Type type) {
  switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::ShortcutOverride:  // comes before every key, also before one that somebody takes on its way here
      isUsed_ = true;
      break;
    case QEvent::FocusOut:
      ownerBefore_ = XCB_NONE;
      break;
    default:
      break;
  }
}

}  // namespace quenlio
