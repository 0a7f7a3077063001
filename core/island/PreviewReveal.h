// How another item's picture comes into the large preview. Owned by the view that paints it. Main thread.
#pragma once

#include "core/geometry/Easing.h"

namespace quenlio {

class PreviewReveal {
 public:
  static constexpr double kHiddenOpacity = 0;
  static constexpr double kHiddenOffsetY = 6;  // points below its place
  static constexpr TimedCurve kOpacity{kEaseOut, Seconds(0.18)};
  static constexpr Spring kOffsetY{.mass = 1, .stiffness = 280, .damping = 30};

  // The preview has been painted since it was last shown; it has gone.
  void painted() { isSeen_ = true; }
  void hidden() { isSeen_ = false; }

  // Whether the next picture comes in from hidden or is simply there. A capture that brings the island up changes the
  // item before anything has been painted: there is no picture yet that it would take the place of, and the panel's own
  // entry shows it. A second one inside of that would only hold back what the panel comes up for.
  [[nodiscard]] bool revealsNext() const { return isSeen_; }

 private:
  bool isSeen_ = false;
};

}  // namespace quenlio
