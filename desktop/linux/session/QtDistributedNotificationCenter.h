// Messages between programs as a signal of the session bus: com.quenlio.DistributedNotification.Posted(name, userInfo),
// on any path. Main thread.
#pragma once

#include <QtDBus/QDBusMessage>
#include <map>
#include <optional>
#include <string>

#include "core/base/Observers.h"
#include "core/base/WeakOwner.h"
#include "core/platform/DistributedNotificationCenter.h"

#include "desktop/linux/session/DBusSignal.h"

namespace quenlio {

class QtDistributedNotificationCenter final : public DistributedNotificationCenter {
 public:
  [[nodiscard]] Subscription addObserverForName(std::string_view name,
                                                std::function<void(const NotificationUserInfo&)> block) override;

 private:
  void receive(const QDBusMessage& message);

  std::map<std::string, Observers<const NotificationUserInfo&>> observers_;  // by the name of the notification
  std::optional<DBusSignal> signal_;                                         // from the first observer on
  WeakOwner<QtDistributedNotificationCenter> weak_{this};
};

}  // namespace quenlio
