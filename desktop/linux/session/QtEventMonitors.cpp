#include "desktop/linux/session/QtEventMonitors.h"

#include <QtCore/QCoreApplication>
#include <QtGui/QKeyEvent>
#include <QtGui/QWindow>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>
#include <utility>

#include "desktop/linux/session/KeyTranslation.h"

namespace quenlio {
namespace {

// Typing is meant for the text, and a dialog has an answer to every key.
bool isForTyping(const QWidget& focused) {
  return focused.testAttribute(Qt::WA_InputMethodEnabled) || qobject_cast<const QDialog*>(focused.window()) != nullptr;
}

// A button that has the keyboard keeps the keys that press it to itself. It is asked as it would be before any
// shortcut.
bool isButtonsOwn(QWidget& focused, const QKeyEvent& key) {
  if (qobject_cast<QAbstractButton*>(&focused) == nullptr) {
    return false;
  }
  QKeyEvent question(QEvent::ShortcutOverride, key.key(), key.modifiers(), key.text(), key.isAutoRepeat());
  question.ignore();
  QCoreApplication::sendEvent(&focused, &question);
  return question.isAccepted();
}

// Where a press into this window goes; nullptr for a window that holds no widgets.
QWidget* focusedIn(const QWindow& window) {
  QWidget* widget = QWidget::find(window.winId());
  return widget != nullptr && widget->focusWidget() != nullptr ? widget->focusWidget() : widget;
}

}  // namespace

QtEventMonitors::QtEventMonitors() {
  QCoreApplication::instance()->installEventFilter(this);
}

Subscription QtEventMonitors::addLocalMonitorForKeyDown(std::function<bool(const KeyEvent&)> handler) {
  return monitors_.add([handler = std::move(handler)](const KeyEvent& key, bool& isConsumed) {
    isConsumed = isConsumed || handler(key);
  });
}

bool QtEventMonitors::eventFilter(QObject* object, QEvent* event) {
  // A press comes to the window first and then, as another event, to the widget in it: once is enough.
  const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease;
  if (!isKey || !object->isWindowType()) {
    return false;
  }
  const auto& press = *static_cast<const QKeyEvent*>(event);
  if (repeats_.hides(press)) {
    KeyRepeats::sendAsRepeat(press, *object);
    return true;
  }
  return event->type() == QEvent::KeyPress && isTaken(press, *static_cast<const QWindow*>(object));
}

bool QtEventMonitors::isTaken(const QKeyEvent& press, const QWindow& window) {
  // A menu that is open has the keys for itself.
  if (QApplication::activePopupWidget() != nullptr) {
    return false;
  }
  QWidget* focused = focusedIn(window);
  if (focused != nullptr && (isForTyping(*focused) || isButtonsOwn(*focused, press))) {
    return false;
  }
  const KeyEvent key = keyEventFrom(press);
  bool isConsumed = false;
  monitors_.call(key, isConsumed);
  return isConsumed;
}

}  // namespace quenlio
