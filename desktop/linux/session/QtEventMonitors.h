// Key presses on their way to any window of the program, seen by a filter on the application, except for those
// that a button with the keyboard keeps to itself. Main thread.
#pragma once

#include <QtCore/QObject>

#include "core/base/Observers.h"
#include "core/platform/Panel.h"

namespace quenlio {

class QtEventMonitors final : public EventMonitors, private QObject {
 public:
  QtEventMonitors();

  [[nodiscard]] Subscription addLocalMonitorForKeyDown(std::function<bool(const KeyEvent&)> handler) override;

 private:
  bool eventFilter(QObject* object, QEvent* event) override;

  // Each hears of a key and whether it has been consumed, which it may say itself.
  Observers<const KeyEvent&, bool&> monitors_;
};

}  // namespace quenlio
