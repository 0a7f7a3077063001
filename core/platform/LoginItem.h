// Starting with the user's desktop. Main thread.
#pragma once

#include "core/platform/PlatformError.h"

namespace quenlio {

enum class LoginItemStatus { notRegistered, enabled, requiresApproval, notFound };

// SMAppService.mainApp.
class LoginItem {
 public:
  virtual ~LoginItem() = default;
  [[nodiscard]] virtual LoginItemStatus status() const = 0;
  virtual PlatformResult<Done> registerItem() = 0;
  virtual PlatformResult<Done> unregisterItem() = 0;
};

}  // namespace quenlio
