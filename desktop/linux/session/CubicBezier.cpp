#include "desktop/linux/session/CubicBezier.h"

namespace quenlio {
namespace {

// One coordinate of the curve from (0, 0) to (1, 1) with these inner control values, at the parameter t.
double at(double first, double second, double t) {
  const double rest = 1 - t;
  return 3 * rest * rest * t * first + 3 * rest * t * t * second + t * t * t;
}

}  // namespace

double progress(const TimingCurve& curve, double time) {
  if (time <= 0) {
    return 0;
  }
  if (time >= 1) {
    return 1;
  }
  // x grows with the parameter, so halving finds it; forty steps are far below a pixel and still nothing to run.
  double low = 0;
  double high = 1;
  for (int step = 0; step < 40; ++step) {
    const double middle = (low + high) / 2;
    (at(curve.controlPoints[0], curve.controlPoints[2], middle) < time ? low : high) = middle;
  }
  return at(curve.controlPoints[1], curve.controlPoints[3], (low + high) / 2);
}

}  // namespace quenlio
