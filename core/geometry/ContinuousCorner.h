// Rectangles whose corners begin to turn gently, so that the eye finds no place where a straight side ends: a corner
// bends along the sides farther than a circle's would, and is as deep as the circle of its radius on the diagonal.
// Pure; any thread.
#pragma once

#include <vector>

#include "core/geometry/Geometry.h"

namespace quenlio {

// How far such a corner reaches along its sides, where the sides leave it that room.
[[nodiscard]] constexpr double continuousCornerReach(double radius) {
  return 1.5 * radius;
}

namespace detail {
// The corner between the sides at x = 0 and y = 0, from the end of the one to the beginning of the other. The sides are
// that long; half of the shorter one is the most that the corner takes, and a circle's quarter is what is left of it
// then.
[[nodiscard]] std::vector<Size> continuousCorner(Size sides, double radius);
}  // namespace detail

// The outline, once around, beginning at the left side's end at the corner of minX and minY. Just the four corners
// without a radius.
template <class Space>
[[nodiscard]] std::vector<Point<Space>> continuousRectangle(const Rect<Space>& rect, double radius) {
  const std::vector<Size> corner = detail::continuousCorner(rect.size, radius);
  std::vector<Point<Space>> outline;
  outline.reserve(4 * corner.size());
  for (const Size& at : corner) {
    outline.push_back({rect.minX() + at.width, rect.minY() + at.height});
  }
  for (auto at = corner.rbegin(); at != corner.rend(); ++at) {
    outline.push_back({rect.maxX() - at->width, rect.minY() + at->height});
  }
  for (const Size& at : corner) {
    outline.push_back({rect.maxX() - at.width, rect.maxY() - at.height});
  }
  for (auto at = corner.rbegin(); at != corner.rend(); ++at) {
    outline.push_back({rect.minX() + at->width, rect.maxY() - at->height});
  }
  return outline;
}

}  // namespace quenlio
