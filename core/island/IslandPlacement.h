// On which display the island is, and where on it. Main thread. Part of IslandOverlayController.
#pragma once

#include <optional>

#include "core/identity/ScreenUtilities.h"
#include "core/settings/AppSettings.h"

namespace quenlio {

class Panel;
class ScreenshotStore;

class IslandPlacement {
 public:
  struct Dependencies {
    const Panel& panel;
    const Screens& screens;
    const ScreenshotStore& store;
  };
  explicit IslandPlacement(Dependencies dependencies) : dependencies_(dependencies) {}

  // The panel's place on a screen: a square at the bottom right of the visible frame, 12 points from its edges.
  [[nodiscard]] static Rect<Screen> desiredFrame(const ScreenInfo& screen, IslandSize size);

  // The preferred display where it is there, else the one under the pointer.
  [[nodiscard]] std::optional<ScreenInfo> resolveTargetScreen(std::optional<DisplayID> preferredDisplayID) const;
  // Where a panel that is up is laid out anew.
  [[nodiscard]] std::optional<ScreenInfo> targetScreenForPanelUpdates() const;

  std::optional<DisplayID> lastPresentedDisplayID;

 private:
  Dependencies dependencies_;
};

}  // namespace quenlio
