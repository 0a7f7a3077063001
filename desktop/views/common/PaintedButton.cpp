#include "desktop/views/common/PaintedButton.h"

#include <QtGui/QFocusEvent>

namespace quenlio {

PaintedButton::PaintedButton(QWidget* parent) : QAbstractButton(parent) {
  setFocusPolicy(Qt::TabFocus);
  setCursor(Qt::PointingHandCursor);
}

void PaintedButton::enterEvent(QEnterEvent* event) {
  isHovered_ = true;
  QAbstractButton::enterEvent(event);
  update();
}

void PaintedButton::leaveEvent(QEvent* event) {
  isHovered_ = false;
  QAbstractButton::leaveEvent(event);
  update();
}

void PaintedButton::focusInEvent(QFocusEvent* event) {
  showsFocus_ = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
  QAbstractButton::focusInEvent(event);
}

void PaintedButton::focusOutEvent(QFocusEvent* event) {
  showsFocus_ = false;
  QAbstractButton::focusOutEvent(event);
}

}  // namespace quenlio
