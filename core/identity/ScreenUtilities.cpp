#include "core/identity/ScreenUtilities.h"

namespace quenlio {

namespace {

// NSMouseInRect with an unflipped rectangle: the lower edge of the frame lies outside and the upper one inside.
bool mouseInRect(Point<Screen> mouse, const Rect<Screen>& frame) {
  return mouse.x >= frame.minX() && mouse.x < frame.maxX() && mouse.y > frame.minY() && mouse.y <= frame.maxY();
}

}  // namespace

std::optional<ScreenInfo> ScreenUtilities::activeScreen(const Screens& screens) {
  const Point<Screen> pointer = screens.mouseLocation();
  for (const ScreenInfo& screen : screens.screens()) {
    if (mouseInRect(pointer, screen.frame)) {
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
