// One number of a view on its way from where it is to where it belongs. Owned by its view. Main thread.
//
// A new way begins where the number is just then. A view that nobody sees has no use for the way: jumpTo() then.
#pragma once

#include <functional>
#include <variant>

#include "core/base/WeakOwner.h"
#include "core/geometry/Easing.h"
#include "core/platform/Scheduler.h"

namespace quenlio {

// A spring takes the time that it takes.
using MotionCurve = std::variant<TimedCurve, Spring>;

class Motion {
 public:
  // Both outlive this; changed is called at each step and holds the view weakly.
  Motion(Scheduler& scheduler, const Clock& clock, double value, std::function<void()> changed);
  Motion(const Motion&) = delete;
  Motion& operator=(const Motion&) = delete;

  [[nodiscard]] double value() const { return value_; }
  [[nodiscard]] double target() const { return target_; }
  [[nodiscard]] bool isRunning() const { return static_cast<bool>(timer_); }

  void animateTo(double target, const MotionCurve& curve);
  void jumpTo(double target);

 private:
  void step();

  Scheduler& scheduler_;
  const Clock& clock_;
  double value_;
  double target_;
  double origin_;
  std::function<void()> changed_;
  MotionCurve curve_;
  std::chrono::nanoseconds start_{0};  // monotonic
  ScheduledTask timer_;                // while it runs
  WeakOwner<Motion> weak_{this};
};

}  // namespace quenlio
