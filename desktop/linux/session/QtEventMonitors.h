// Key presses on their way to any window of the program, seen by a filter on the application. Three kinds are not:
// those into a text field or into a dialog, those that a button with the keyboard keeps to itself, and those while a
// menu is open. Repeats of a held key that pass for presses are made out on the way. Main thread.
#pragma once

#include <QtCore/QObject>

#include "core/base/Observers.h"
#include "core/platform/Panel.h"

#include "desktop/linux/session/KeyRepeats.h"

QT_BEGIN_NAMESPACE
class QWindow;
QT_END_NAMESPACE

namespace quenlio {

class QtEventMonitors final : public EventMonitors, private QObject {
 public:
  QtEventMonitors();

  [[nodiscard]] Subscription addLocalMonitorForKeyDown(std::function<bool(const KeyEvent&)> handler) override;

 private:
  bool eventFilter(QObject* object, QEvent* event) override;
  bool isTaken(const QKeyEvent& press, const QWindow& window);

  // Each hears of a key and whether it has been consumed, which it may say itself.
  Observers<const KeyEvent&, bool&> monitors_;
  KeyRepeats repeats_;
};

}  // namespace quenlio
