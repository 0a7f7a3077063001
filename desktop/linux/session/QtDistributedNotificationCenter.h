// Messages between programs as a signal of the session bus: com.quenlio.DistributedNotification.Posted(name, userInfo),
// on any path. Main thread.
#pragma once

#include <QtDBus/QDBusMessage>
#include <memory>
#include <optional>
#include <vector>

#include "core/base/WeakOwner.h"
#include "core/platform/DistributedNotificationCenter.h"

#include "desktop/linux/session/DBusSignal.h"

namespace quenlio {

class QtDistributedNotificationCenter final : public DistributedNotificationCenter {
 public:
  [[nodiscard]] Subscription addObserverForName(std::string_view name,
                                                std::function<void(const NotificationUserInfo&)> block) override;

 private:
  struct Observer {
    std::string name;
    std::function<void(const NotificationUserInfo&)> block;
    bool isActive = true;
  };
  using Observers = std::vector<std::shared_ptr<Observer>>;

  void receive(const QDBusMessage& message);

  std::shared_ptr<Observers> observers_ = std::make_shared<Observers>();  // subscriptions may outlive this
  std::optional<DBusSignal> signal_;                                      // from the first observer on
  WeakOwner<QtDistributedNotificationCenter> weak_{this};
};

}  // namespace quenlio
