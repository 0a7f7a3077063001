// How far an animation has come after some of its time: cubic timing functions and damped springs. Pure; any thread.
#pragma once

#include <array>
#include <numbers>

#include "core/base/Date.h"

namespace quenlio {

// A cubic timing function by its two inner control points.
struct TimingCurve {
  std::array<double, 4> controlPoints;  // x1, y1, x2, y2; the xs lie in 0 to 1, as with any function of time
  bool operator==(const TimingCurve&) const = default;
};
inline constexpr TimingCurve kEaseIn{{0.42, 0.0, 1.0, 1.0}};
inline constexpr TimingCurve kEaseOut{{0.0, 0.0, 0.58, 1.0}};
inline constexpr TimingCurve kEaseInOut{{0.42, 0.0, 0.58, 1.0}};

// A timing curve over this long.
struct TimedCurve {
  TimingCurve curve;
  Seconds duration;
  bool operator==(const TimedCurve&) const = default;
};

// share and result from 0 to 1; what lies outside is clamped to the ends.
[[nodiscard]] double progress(const TimingCurve& curve, double share);

// A mass on a spring that is let go of at rest, one unit away from where it belongs.
struct Spring {
  double mass = 1;
  double stiffness = 100;
  double damping = 10;

  // By the time of one undamped swing, and how much of the critical damping there is, 0 to 1: mass 1, stiffness
  // (2 pi / response) squared, damping 4 pi fraction / response.
  [[nodiscard]] static constexpr Spring withResponse(Seconds response, double dampingFraction);
  bool operator==(const Spring&) const = default;
};

constexpr Spring Spring::withResponse(Seconds response, double dampingFraction) {
  const double frequency = 2 * std::numbers::pi / response.count();
  return {.mass = 1, .stiffness = frequency * frequency, .damping = 2 * dampingFraction * frequency};
}

// 0 at the start; towards 1, and past it for a while when the damping is less than critical.
[[nodiscard]] double progress(const Spring& spring, Seconds elapsed);

// After this long it stays within a thousandth of where it belongs.
[[nodiscard]] Seconds settlingTime(const Spring& spring);

}  // namespace quenlio
