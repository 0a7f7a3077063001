#include "desktop/linux/session/QtEventMonitors.h"

#include <QtCore/QCoreApplication>
#include <QtGui/QGuiApplication>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QApplication>
#include <utility>

#include "desktop/linux/session/KeyTranslation.h"

namespace quenlio {
namespace {

// A button that has the keyboard keeps the keys that press it, or go on from it, to itself. It is asked as it would be
// before any shortcut.
bool belongsToButton(const QKeyEvent& key) {
  auto* button = qobject_cast<QAbstractButton*>(QGuiApplication::focusObject());
  if (button == nullptr) {
    return false;
  }
  QKeyEvent question(QEvent::ShortcutOverride, key.key(), key.modifiers(), key.text(), key.isAutoRepeat());
  question.ignore();
  QCoreApplication::sendEvent(button, &question);
  return question.isAccepted();
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
  // A press comes to the window first and then, as another event, to the widget in it: once is enough. A menu that is
  // open has the keys for itself.
  if (event->type() != QEvent::KeyPress || !object->isWindowType() || QApplication::activePopupWidget() != nullptr) {
    return false;
  }
  const auto& press = *static_cast<const QKeyEvent*>(event);
  if (belongsToButton(press)) {
    return false;
  }
  const KeyEvent key = keyEventFrom(press);
  bool isConsumed = false;
  monitors_.call(key, isConsumed);
  return isConsumed;
}

}  // namespace quenlio
