// How a button of the name row stands out. A table, set by hand. A plain value; any thread.
#pragma once

#include "core/island/ControlTint.h"

namespace quenlio {

struct RowButtonEmphasis {
  double presence;  // opacity of the whole button
  double tint;      // opacity of the disc behind the symbol
  bool isStrong;    // the symbol is in the first of the two icon colours

  struct Touch {
    bool isRevealed = true;  // a button may wait for the pointer to come near
    bool isHovering = false;
    bool isPressed = false;
    bool isFocused = false;  // by the keyboard, which reveals it too
  };
  [[nodiscard]] static constexpr RowButtonEmphasis of(const Touch& touch) {
    return {.presence = touch.isRevealed || touch.isFocused ? 1.0 : 0.0,
            .tint = controlTint(touch.isHovering, touch.isPressed),
            .isStrong = touch.isPressed || touch.isHovering || touch.isFocused};
  }
  bool operator==(const RowButtonEmphasis&) const = default;
};

}  // namespace quenlio
