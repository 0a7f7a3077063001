#include "core/tooltip/TooltipPlacement.h"

#include <algorithm>

namespace quenlio {
namespace {

// The pointer keeps clear of the bubble's round corners, by half of its own width beyond the corner's.
constexpr double kCornerRoom = 10;
constexpr double kHalfPointer = 6;

// Where both limits cannot hold, the upper one does.
double between(double value, double lower, double upper) {
  return std::min(std::max(value, lower), upper);
}

}  // namespace

TooltipPlacement TooltipPlacement::placement(const Rect<TooltipHostSpace>& anchor, Size bubbleSize,
                                             Size containerSize) {
  const double halfW = bubbleSize.width * 0.5;
  const double halfH = bubbleSize.height * 0.5;
  const double anchorX = anchor.minX() + anchor.size.width * 0.5;
  TooltipPlacement placement;

  const double leftmost = halfW + kTooltipMargin;
  placement.center.x = bubbleSize.width > containerSize.width - 2 * kTooltipMargin
                           ? leftmost
                           : between(anchorX, leftmost, containerSize.width - halfW - kTooltipMargin);

  const double limit = std::max(halfW - kCornerRoom - kHalfPointer, 0.0);
  placement.pointerOffsetX = between(anchorX - placement.center.x, -limit, limit);

  const double above = anchor.minY() - kTooltipGap - halfH;
  const double below = anchor.maxY() + kTooltipGap + halfH;
  const double lowest = containerSize.height - kTooltipMargin;
  const bool isAbove = above - halfH >= kTooltipMargin || below + halfH > lowest;
  placement.center.y = between(isAbove ? above : below, halfH + kTooltipMargin, lowest - halfH);
  placement.pointer = isAbove ? TooltipPointerDirection::down : TooltipPointerDirection::up;
  return placement;
}

}  // namespace quenlio
