// How far a control of the toolbar comes forward: at rest, under the pointer, pressed, or of no use. A table, set by
// hand. A plain value; any thread.
#pragma once

#include <algorithm>

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
  // At rest an icon is never fainter than the theme's floor.
  [[nodiscard]] static constexpr ToolbarEmphasis of(const Touch& touch, double idleOpacityFloor);
  bool operator==(const ToolbarEmphasis&) const = default;

  static constexpr double kBaseOpacity = 0.84;
};

constexpr ToolbarEmphasis ToolbarEmphasis::of(const Touch& touch, double idleOpacityFloor) {
  if (!touch.isEnabled) {
    return {.opacity = 0.32, .scale = 1, .tint = 0};
  }
  if (touch.isPressed) {
    return {.opacity = 1, .scale = 0.95, .tint = 0.18};
  }
  if (touch.isHovering) {
    return {.opacity = 1, .scale = 1.035, .tint = 0.10};
  }
  return {.opacity = std::max(kBaseOpacity, idleOpacityFloor), .scale = 1, .tint = 0};
}

}  // namespace quenlio
