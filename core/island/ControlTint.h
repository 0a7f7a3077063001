// How strong the tint is behind the icon of a control of the island. Pure; any thread.
#pragma once

namespace quenlio {

// An opacity, 0 to 1.
[[nodiscard]] constexpr double controlTint(bool isHovering, bool isPressed) {
  return isPressed ? 0.18 : isHovering ? 0.10 : 0.0;
}

}  // namespace quenlio
