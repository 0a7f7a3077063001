// Waiting on virtual time, as waitUntil() does on the event loop.
#pragma once

#include <functional>

#include "tests/harness/VirtualTime.h"

namespace quenlio {

// Lets time pass until the condition holds; false when ten seconds have not brought it about.
[[nodiscard]] inline bool until(VirtualTime& time, const std::function<bool()>& condition) {
  for (int step = 0; step < 10'000 && !condition(); ++step) {
    time.advanceBy(Seconds(0.001));
  }
  return condition();
}

}  // namespace quenlio
