// The system's clocks.
#pragma once

#include "core/platform/Scheduler.h"

namespace quenlio {

class LinuxClock final : public Clock {
 public:
  [[nodiscard]] Date now() const override { return std::chrono::system_clock::now(); }
  [[nodiscard]] std::chrono::nanoseconds monotonic() const override {
    return std::chrono::steady_clock::now().time_since_epoch();
  }
};

}  // namespace quenlio
