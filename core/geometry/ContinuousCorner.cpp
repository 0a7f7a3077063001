#include "core/geometry/ContinuousCorner.h"

#include <cmath>
#include <numbers>

namespace quenlio::detail {
namespace {

// Enough for a corner of some fifty pixels to look round.
constexpr int kSteps = 20;

}  // namespace

// A quarter of the curve x^n + y^n = 1, stretched to the reach. The exponent is the one that brings it through the
// middle of the circle's quarter; without room to reach farther than the circle does it is 2, which is the circle.
std::vector<Size> continuousCorner(Size sides, double radius) {
  const double room = std::min(sides.width, sides.height) / 2;
  const double fitted = std::min(radius, room);
  if (fitted <= 0) {
    return {{0, 0}};
  }
  const double reach = std::min(continuousCornerReach(fitted), room);
  const double depth = fitted * (1 - std::numbers::sqrt2 / 2);
  const double exponent = -std::numbers::ln2 / std::log(1 - depth / reach);
  std::vector<Size> corner;
  corner.reserve(kSteps + 1);
  for (int step = 0; step <= kSteps; ++step) {
    const double turn = std::numbers::pi / 2 * step / kSteps;
    // The cosine of a right angle is rounded to a little above or below nothing.
    const double across = std::pow(std::max(0.0, std::cos(turn)), 2 / exponent);
    const double down = std::pow(std::max(0.0, std::sin(turn)), 2 / exponent);
    corner.push_back({reach * (1 - across), reach * (1 - down)});
  }
  return corner;
}

}  // namespace quenlio::detail
