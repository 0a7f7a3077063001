// The log on standard error, from where the desktop's session keeps it. One line a message, whole even when threads log
// at once.
#pragma once

#include "core/platform/SystemLog.h"

namespace quenlio {

class LinuxSystemLog final : public SystemLog {
 public:
  void NSLog(std::string_view message) override;
};

}  // namespace quenlio
