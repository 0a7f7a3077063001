#include "core/geometry/Easing.h"

#include <algorithm>
#include <cmath>

namespace quenlio {
namespace {

// One coordinate of the curve from (0, 0) to (1, 1) with these inner control values, at the parameter t.
double at(double first, double second, double t) {
  const double rest = 1 - t;
  return 3 * rest * rest * t * first + 3 * rest * t * t * second + t * t * t;
}

double undampedFrequency(const Spring& spring) {
  return std::sqrt(spring.stiffness / spring.mass);
}

double dampingRatio(const Spring& spring) {
  return spring.damping / (2 * std::sqrt(spring.stiffness * spring.mass));
}

}  // namespace

double progress(const TimingCurve& curve, double share) {
  if (share <= 0) {
    return 0;
  }
  if (share >= 1) {
    return 1;
  }
  // x grows with the parameter, so halving finds it; forty steps are far below a pixel and still nothing to run.
  double low = 0;
  double high = 1;
  for (int step = 0; step < 40; ++step) {
    const double middle = (low + high) / 2;
    (at(curve.controlPoints[0], curve.controlPoints[2], middle) < share ? low : high) = middle;
  }
  return at(curve.controlPoints[1], curve.controlPoints[3], (low + high) / 2);
}

// The damped harmonic oscillator x'' = -2 z w x' - w^2 x with x(0) = 1 and x'(0) = 0.
double progress(const Spring& spring, Seconds elapsed) {
  const double w = undampedFrequency(spring);
  const double z = dampingRatio(spring);
  const double t = std::max(elapsed.count(), 0.0);
  if (z < 1) {
    const double swing = w * std::sqrt(1 - z * z);
    return 1 - std::exp(-z * w * t) * (std::cos(swing * t) + z * w / swing * std::sin(swing * t));
  }
  if (z == 1) {
    return 1 - std::exp(-w * t) * (1 + w * t);
  }
  const double slow = -w * (z - std::sqrt(z * z - 1));
  const double fast = -w * (z + std::sqrt(z * z - 1));
  return 1 - (fast * std::exp(slow * t) - slow * std::exp(fast * t)) / (fast - slow);
}

// The envelope of the swing falls to a thousandth; without a swing, the slower of the two ways home has ten of its time
// constants, which is enough for a critical spring too.
Seconds settlingTime(const Spring& spring) {
  const double w = undampedFrequency(spring);
  const double z = dampingRatio(spring);
  if (z < 1) {
    return Seconds((std::log(1000) - std::log(std::sqrt(1 - z * z))) / (z * w));
  }
  return Seconds(10 / (w * (z - std::sqrt(z * z - 1))));
}

}  // namespace quenlio
