// Where the bubble of a tooltip stands beside the control that it belongs to. Pure; any thread.
#pragma once

#include "core/geometry/Geometry.h"

namespace quenlio {

// The view that bubbles are drawn in, in points from its top left, y growing downward.
struct TooltipHostSpace;

enum class TooltipPointerDirection { up, down };

struct TooltipPlacement {
  Point<TooltipHostSpace> center;  // of the bubble, without its pointer
  double pointerOffsetX = 0;       // of the pointer's middle from the bubble's
  TooltipPointerDirection pointer = TooltipPointerDirection::down;

  // Above the control where there is room, and otherwise below, in the middle of it as far as the margin allows. A
  // bubble that is too wide for the host begins at its left margin.
  [[nodiscard]] static TooltipPlacement placement(const Rect<TooltipHostSpace>& anchor, Size bubbleSize,
                                                  Size containerSize);
  bool operator==(const TooltipPlacement&) const = default;
};

// What stays free between a bubble and the edges of its host, in points.
inline constexpr double kTooltipMargin = 24;
// Between the control and the bubble; the pointer is in it.
inline constexpr double kTooltipGap = 7;

}  // namespace quenlio
