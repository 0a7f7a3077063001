#include "core/identity/ScreenUtilities.h"

namespace quenlio {

std::optional<ScreenInfo> ScreenUtilities::activeScreen(const Screens& screens) {
  const Point<Screen> pointer = screens.mouseLocation();
  for (const ScreenInfo& screen : screens.screens()) {
    if (screen.frame.contains(pointer)) {
      return screen;
    }
  }
  return screens.mainScreen();
}

std::optional<DisplayID> ScreenUtilities::displayID(const ScreenInfo& screen) {
  return screen.screenNumber ? std::optional(static_cast<DisplayID>(*screen.screenNumber)) : std::nullopt;
}

std::optional<DisplayID> ScreenUtilities::activeDisplayID(const Screens& screens) {
  const auto screen = activeScreen(screens);
  return screen ? displayID(*screen) : std::nullopt;
}

}  // namespace quenlio
