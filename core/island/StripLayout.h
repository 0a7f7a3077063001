// Where the cells of the strip stand, and how far it is to be scrolled. A plain value; any thread.
#pragma once

#include <cstddef>

#include "core/island/IslandLayoutMetrics.h"

namespace quenlio {

// All lengths in points. Offsets are what is scrolled away on the left.
struct StripLayout {
  const IslandLayoutMetrics& metrics;
  std::size_t count;  // of the cells
  double width;       // that is seen of the strip

  // From one cell to the next.
  [[nodiscard]] double step() const { return metrics.thumbSize + metrics.thumbSpacing; }
  // Before scrolling.
  [[nodiscard]] double leftOf(std::size_t index) const { return static_cast<double>(index) * step(); }
  // Of every cell: as far down as the tray is inset or, where it is not high enough for that on both sides, in the
  // middle.
  [[nodiscard]] double top() const;
  // The offset at the right end; 0 when all is seen at once.
  [[nodiscard]] double furthest() const;
  [[nodiscard]] double within(double offset) const;
  // How much of the strip fades at an end where more lies beyond.
  [[nodiscard]] double fadeReach() const { return 0.75 * metrics.thumbSize; }
  // The nearest offset at which a cell stands as far in as the fade reaches, with a glimpse of the one beyond it.
  [[nodiscard]] double offsetShowing(std::size_t index, double offset) const;
};

}  // namespace quenlio
