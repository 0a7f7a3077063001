#include "desktop/linux/session/QtEventMonitors.h"

#include <QtCore/QCoreApplication>
#include <QtGui/QKeyEvent>
#include <utility>

#include "desktop/linux/session/KeyTranslation.h"

namespace quenlio {

QtEventMonitors::QtEventMonitors() {
  QCoreApplication::instance()->installEventFilter(this);
}

Subscription QtEventMonitors::addLocalMonitorForKeyDown(std::function<bool(const KeyEvent&)> handler) {
  auto monitor = std::make_shared<Monitor>(Monitor{.handler = std::move(handler)});
  monitors_->push_back(monitor);
  return Subscription([monitor, list = std::weak_ptr(monitors_)] {
    monitor->isActive = false;
    if (const auto monitors = list.lock()) {
      std::erase(*monitors, monitor);
    }
  });
}

bool QtEventMonitors::eventFilter(QObject* object, QEvent* event) {
  // A press comes to the window first and then, as another event, to the widget in it: once is enough.
  if (event->type() != QEvent::KeyPress || !object->isWindowType()) {
    return false;
  }
  const KeyEvent key = keyEventFrom(*static_cast<const QKeyEvent*>(event));
  // A copy, since a handler may add or end monitors.
  const Monitors monitors = *monitors_;
  for (const auto& monitor : monitors) {
    if (monitor->isActive && monitor->handler(key)) {
      return true;
    }
  }
  return false;
}

}  // namespace quenlio
