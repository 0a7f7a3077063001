// Tells from which frame on a panel shows something, also while it fades in and rises: then what is on the screen is
// the bare desktop, the same share of the way toward the panel's final look everywhere, a few pixels further down. Pure
// functions on values.
#pragma once

#include <cstdint>
#include <optional>

#include "bench/screen/ScreenRegion.h"

namespace quenlio::bench {

// The part of a frame that is looked at, in the frame's own coordinates.
struct Look {
  int frameWidth = 0;
  Area part;
  std::uint32_t desktop = 0;  // 0xRRGGBB, everywhere, where there is not yet what fades in
  int mostRise = 0;           // how far down, in pixels, the part may be in a frame; the frame reaches that far
};

// How much of the part differs between two frames where nothing moves: the number of pixels.
[[nodiscard]] int changedPixels(const Look& look, const Frame& a, const Frame& b);

// Whether the frame shows the part as the final frame does and not as the earlier one did, at any visible opacity.
[[nodiscard]] bool shows(const Look& look, const Frame& frame, const Frame& final, const Frame& earlier);

}  // namespace quenlio::bench
