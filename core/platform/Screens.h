// The screens of the desktop and the pointer on them. Main thread.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "core/geometry/Geometry.h"

namespace quenlio {

struct ScreenInfo {
  Rect<Screen> frame;         // the whole screen, points
  Rect<Screen> visibleFrame;  // without the desktop's own bars, points
  // The value of "NSScreenNumber"; nothing when the screen has none.
  std::optional<std::uint64_t> screenNumber;
  bool operator==(const ScreenInfo&) const = default;
};

class Screens {
 public:
  virtual ~Screens() = default;
  [[nodiscard]] virtual std::vector<ScreenInfo> screens() const = 0;
  [[nodiscard]] virtual std::optional<ScreenInfo> mainScreen() const = 0;
  [[nodiscard]] virtual Point<Screen> mouseLocation() const = 0;
};

}  // namespace quenlio
