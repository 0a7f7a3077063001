// Messages between programs of one user's desktop. Main thread.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <variant>

#include "core/base/Subscription.h"

namespace quenlio {

// Strings, and all else as nothing.
using NotificationUserInfo = std::map<std::string, std::variant<std::monostate, std::string>>;

class DistributedNotificationCenter {
 public:
  virtual ~DistributedNotificationCenter() = default;
  // The block runs on the main queue for each posting of that name until the Subscription ends.
  [[nodiscard]] virtual Subscription addObserverForName(std::string_view name,
                                                        std::function<void(const NotificationUserInfo&)> block) = 0;
};

}  // namespace quenlio
