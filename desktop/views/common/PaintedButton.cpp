#include "desktop/views/common/PaintedButton.h"

#include <QtGui/QKeyEvent>

namespace quenlio {
namespace {

bool isEnter(const QKeyEvent& key) {
  return key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
}

// The number pad's own bit is no modifier that anybody holds.
bool isPlain(const QKeyEvent& key) {
  return (key.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
}

}  // namespace

PaintedButton::PaintedButton(QWidget* parent) : QAbstractButton(parent) {
  setFocusPolicy(Qt::TabFocus);
  setCursor(Qt::PointingHandCursor);
}

bool PaintedButton::usesKey(const QKeyEvent& key) const {
  return isPlain(key) && (key.key() == Qt::Key_Space || isEnter(key));
}

// Asked before any shortcut is looked for.
bool PaintedButton::event(QEvent* event) {
  if (event->type() == QEvent::ShortcutOverride && usesKey(*static_cast<const QKeyEvent*>(event))) {
    event->accept();
    return true;
  }
  return QAbstractButton::event(event);
}

void PaintedButton::keyPressEvent(QKeyEvent* event) {
  if (isPlain(*event) && isEnter(*event)) {
    if (!event->isAutoRepeat()) {
      click();
    }
  } else if (event->key() == Qt::Key_Space && isPlain(*event)) {
    QAbstractButton::keyPressEvent(event);
  } else {
    event->ignore();
  }
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

// What goes away under the pointer may not be told that the pointer left.
void PaintedButton::hideEvent(QHideEvent* event) {
  isHovered_ = false;
  QAbstractButton::hideEvent(event);
}

}  // namespace quenlio
