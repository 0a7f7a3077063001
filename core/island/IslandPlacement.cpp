#include "core/island/IslandPlacement.h"

#include "core/island/IslandLayoutMetrics.h"
#include "core/library/ScreenshotStore.h"
#include "core/platform/Panel.h"

namespace quenlio {
namespace {

constexpr double kScreenMargin = 12;

}  // namespace

Rect<Screen> IslandPlacement::desiredFrame(const ScreenInfo& screen, IslandSize size) {
  const double side = IslandLayoutMetrics::panelSide(size);
  const Rect<Screen>& visible = screen.visibleFrame;
  const Point<Screen> corner{visible.maxX() - side - kScreenMargin, visible.minY() + kScreenMargin};
  return {clampedOrigin(corner, {side, side}, visible), {side, side}};
}

std::optional<ScreenInfo> IslandPlacement::resolveTargetScreen(std::optional<DisplayID> preferredDisplayID) const {
  if (preferredDisplayID) {
    for (const ScreenInfo& screen : dependencies_.screens.screens()) {
      if (ScreenUtilities::displayID(screen) == preferredDisplayID) {
        return screen;
      }
    }
  }
  return ScreenUtilities::activeScreen(dependencies_.screens);
}

std::optional<ScreenInfo> IslandPlacement::targetScreenForPanelUpdates() const {
  if (lastPresentedDisplayID) {
    return resolveTargetScreen(lastPresentedDisplayID);
  }
  if (auto screen = dependencies_.panel.screen()) {
    return screen;
  }
  const ScreenshotItem* selected = dependencies_.store.selectedItem();
  if (selected != nullptr && selected->sourceDisplayID) {
    return resolveTargetScreen(selected->sourceDisplayID);
  }
  return resolveTargetScreen(ScreenUtilities::activeDisplayID(dependencies_.screens));
}

}  // namespace quenlio
