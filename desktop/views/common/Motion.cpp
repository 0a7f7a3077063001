#include "desktop/views/common/Motion.h"

#include <utility>

namespace quenlio {
namespace {

constexpr Seconds kStep{1.0 / 60};

Seconds length(const MotionCurve& curve) {
  const auto* timed = std::get_if<TimedCurve>(&curve);
  return timed != nullptr ? timed->duration : settlingTime(std::get<Spring>(curve));
}

double share(const MotionCurve& curve, Seconds elapsed) {
  const auto* timed = std::get_if<TimedCurve>(&curve);
  return timed != nullptr ? progress(timed->curve, elapsed / timed->duration)
                          : progress(std::get<Spring>(curve), elapsed);
}

}  // namespace

Motion::Motion(Scheduler& scheduler, const Clock& clock, double value, std::function<void()> changed)
    : scheduler_(scheduler),
      clock_(clock),
      value_(value),
      target_(value),
      origin_(value),
      changed_(std::move(changed)) {}

void Motion::animateTo(double target, const MotionCurve& curve) {
  if (target == target_) {
    return;
  }
  target_ = target;
  origin_ = value_;
  curve_ = curve;
  start_ = clock_.monotonic();
  timer_ = scheduler_.every(kStep, Seconds::zero(), weak_.bind([](Motion& self) { self.step(); }));
}

void Motion::jumpTo(double target) {
  timer_.cancel();
  target_ = target;
  if (value_ != target) {
    value_ = target;
    changed_();
  }
}

void Motion::step() {
  const Seconds elapsed = clock_.monotonic() - start_;
  if (elapsed >= length(curve_)) {
    jumpTo(target_);
    return;
  }
  value_ = origin_ + (target_ - origin_) * share(curve_, elapsed);
  changed_();
}

}  // namespace quenlio
