// How the island's views get from one state to the next: which curve belongs to which change. Pure; any thread.
#pragma once

#include "core/geometry/Easing.h"

namespace quenlio {

struct IslandMotion {
  static constexpr TimedCurve kExportDragging{kEaseInOut, Seconds(0.12)};
  static constexpr TimedCurve kPreviewHolding{{{0.22, 1, 0.36, 1}}, Seconds(0.12)};
  // Everything else: what changes its tone takes the curve, what changes its place or its size the spring.
  static constexpr TimedCurve kEase{kEaseOut, Seconds(0.16)};
  static constexpr Spring kSpring = Spring::withResponse(Seconds(0.22), 0.84);

  // What the opacity of the content as a whole depends on.
  struct Container {
    bool isExportDragging = false;
    bool isPreviewHolding = false;
  };
  // What that opacity takes from one to the other. A drag that begins ends the holding: the drag tells.
  [[nodiscard]] static constexpr const TimedCurve& ofContainer(const Container& from, const Container& to) {
    if (from.isExportDragging != to.isExportDragging) {
      return kExportDragging;
    }
    return from.isPreviewHolding != to.isPreviewHolding ? kPreviewHolding : kEase;
  }
};

}  // namespace quenlio
