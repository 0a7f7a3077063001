// How far a control of the toolbar comes forward: at rest, under the pointer, pressed, or of no use. A table, set by
// hand. A plain value; any thread.
#pragma once

#include <algorithm>

#include "core/island/ControlTint.h"

namespace quenlio {

struct ToolbarEmphasis {
  double opacity;  // of the icon
  double scale;    // of the icon
  double tint;     // opacity of what lies behind the icon

  struct Touch {
    bool isEnabled = true;
    bool isHovering = false;
    bool isPressed = false;
  };
  // At rest an icon is never fainter than the theme's floor. One of no use is faint, but less so where the theme asks
  // for more contrast.
  [[nodiscard]] static constexpr ToolbarEmphasis of(const Touch& touch, double idleOpacityFloor);
  bool operator==(const ToolbarEmphasis&) const = default;

  static constexpr double kBaseOpacity = 0.84;
  static constexpr double kDisabledOpacity = 0.32;
  static constexpr double kDisabledGain = 2.25;  // for what the floor lies above the base: 0.50 at a floor of 0.92
};

constexpr ToolbarEmphasis ToolbarEmphasis::of(const Touch& touch, double idleOpacityFloor) {
  const double atRest = std::max(kBaseOpacity, idleOpacityFloor);
  if (!touch.isEnabled) {
    return {.opacity = kDisabledOpacity + kDisabledGain * (atRest - kBaseOpacity), .scale = 1, .tint = 0};
  }
  const double tint = controlTint(touch.isHovering, touch.isPressed);
  if (touch.isPressed) {
    return {.opacity = 1, .scale = 0.95, .tint = tint};
  }
  if (touch.isHovering) {
    return {.opacity = 1, .scale = 1.035, .tint = tint};
  }
  return {.opacity = atRest, .scale = 1, .tint = tint};
}

}  // namespace quenlio
