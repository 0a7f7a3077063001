// Key presses on their way to any window of the program, seen by a filter on the application. Main thread.
#pragma once

#include <QtCore/QObject>
#include <memory>
#include <vector>

#include "core/platform/Panel.h"

namespace quenlio {

class QtEventMonitors final : public EventMonitors, private QObject {
 public:
  QtEventMonitors();

  [[nodiscard]] Subscription addLocalMonitorForKeyDown(std::function<bool(const KeyEvent&)> handler) override;

 private:
  struct Monitor {
    std::function<bool(const KeyEvent&)> handler;
    bool isActive = true;
  };
  using Monitors = std::vector<std::shared_ptr<Monitor>>;

  bool eventFilter(QObject* object, QEvent* event) override;

  std::shared_ptr<Monitors> monitors_ = std::make_shared<Monitors>();  // subscriptions may outlive this
};

}  // namespace quenlio
