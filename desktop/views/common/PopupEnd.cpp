#include "desktop/views/common/PopupEnd.h"

#include <QtCore/QEvent>
#include <QtWidgets/QApplication>

namespace quenlio {

bool PopupEnd::isAwaited() {
  QWidget* open = QApplication::activePopupWidget();
  if (open != popup_) {
    if (popup_ != nullptr) {
      popup_->removeEventFilter(this);
    }
    popup_ = open;
    if (open != nullptr) {
      open->installEventFilter(this);
    }
  }
  return open != nullptr;
}

// What is below a popup that closes may be another popup.
bool PopupEnd::eventFilter(QObject* /*object*/, QEvent* event) {
  if (event->type() == QEvent::Hide && !isAwaited()) {
    onEnd_();
  }
  return false;
}

}  // namespace quenlio
